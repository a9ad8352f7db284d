// The colour names and the variables that screen texts may name in their tags.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Konu {

// {color:NAME} and {bgcolor:NAME}: a name and its colour index.
struct ColorName {
  const char* name;
  int index;
};

// The six names, in table order.
const std::vector<ColorName>& ColorNames();

// The colour index for `name`, or -1 when the name is unknown.
int FindColor(std::string_view name);

// {NAME}: a provider is called on every layout of a text that names it, so it must be
// cheap or cache what it returns.
using VariableProvider = std::function<std::string()>;

struct MarkupVariable {
  std::string name;
  VariableProvider provider;
};

class VariableTable {
 public:
  // A table with the given names, every provider returning "".
  explicit VariableTable(const std::vector<std::string>& names);

  // The process-wide table every TextArea is built with: "ip", "ssl-thumbprint",
  // "ssh-dsa-fingerprint", "ssh-rsa-fingerprint", "orinproduct", "orinversion",
  // "supportstart", "supportperiod", "servicetag", "assettag", "BIOSversion", "BMCversion",
  // "CPLDversion", "PLSAversion", "memory".
  static VariableTable& Standard();

  // Null when `name` is not a variable.
  const MarkupVariable* Find(std::string_view name) const;

  // Wires one variable to its source. False (and nothing changes) for an unknown name;
  // an empty provider puts back the one that returns "".
  bool SetProvider(std::string_view name, VariableProvider provider);

  const std::vector<MarkupVariable>& Entries() const { return entries_; }

 private:
  std::vector<MarkupVariable> entries_;
};

}  // namespace Konu
