// The state of a freshly created simulated host, and the layout of host.json.
#pragma once

#include <nlohmann/json.hpp>

namespace Konu::Sim {

// The whole JSON state of a fresh host (what `konu-hostsim create` writes).
//
// Layout, as JSON pointers (keys that hold '/' are escaped as "~1"):
//
//   /host/hostname, /host/domain            "konu-host", "example.test"
//   /host/welcomeMessage, /host/systemAlert  texts ("" = none)
//   /hardware/vendor, /hardware/product     host hardware names
//   /hardware/cpuPackages, /hardware/cpuModel
//   /hardware/memoryPages, /hardware/pageSize   total memory = pages * pageSize
//   /version/product, /version/version, /version/kernelVersion, /version/build
//                                          the four text fields of the 312-byte `system.version`
//                                          record (at bytes 0, 32, 96, 128)
//   /bootOption                            integer; first byte of `system.bootOption` (1 = audit mode)
//   /support/start, /support/period         support contract facts (texts)
//   /support/serviceTag, /support/assetTag  the machine's serial and inventory numbers
//   /firmware/bios, /firmware/bmc, /firmware/cpld, /firmware/plsa   firmware versions
//   /keyboard/current, /keyboard/layouts    current layout name, list of available names
//   /advancedOptions/<~1Path~1Name>         {"type": "integer"|"string", "value", "default",
//                                           "min", "max", "description"}
//                                           e.g. /advancedOptions/~1UserVars~1KonuTimeOut/value
//   /userOptions/<Name>                     user advanced options; a host booted from the network
//                                           has /userOptions/PXEBootEnabled (absent on a fresh host)
//   /firewall/<rulesetId>/enabled            e.g. /firewall/sshServer/enabled
//
//   /network/managementInterface            "nuk0"
//   /network/ipv6Enabled                    kernel IPv6 now; /network/ipv6EnabledAfterReboot pending
//   /network/nukNics/<name>                 virtual NICs of the kernel:
//       mac, portGroup, switch, up, dhcpBound,
//       ipv4 {dhcp, none, address, netmask}        (configured; current = same unless dhcp)
//       ipv6 {dhcp, routerAdvertised, addresses [{address, prefixLength}]}
//       dnsFromDhcp
//   /network/pnics/<name>                   physical NICs nic0..nic3:
//       {label, mac, linkUp, speedMbps, duplex, driver}
//   /network/vswitches/<name>               standard switches:
//       {uplinks [nic names], portGroups {<pg>: {vlanId, teaming {maxActiveUplinks,
//        explicitOrder, activeUplinks [], standbyUplinks []}}}}
//   /network/dvSwitches/<name>              distributed switches (none fresh; `konu-hostsim dvs`):
//       {vendor ("Corbel" when absent), uplinks [this host's NIC names],
//        ports {<key>: {vlanId, uplinks [], blocked, hostLocal, ... other properties}}}
//   /network/nukNics/<name>/dvsPort         the port key when "switch" names a distributed switch;
//       /usable false: the interface is disabled
//   /network/routing/defaultTcpipStack/ipv4Gateway, .../ipv6Gateway
//   /network/dns/defaultTcpipStack/nameServers [texts], /searchDomains [texts], /fromDhcp
//   /network/dhcpServer                     the simulated DHCP server on the management LAN:
//       {available, lease {address, netmask, gateway, nameServers []},
//        ipv6Lease {addresses [{address, prefixLength}], nameServers []}}
//       available=false: a DHCP interface gets 0.0.0.0
//   /network/reachable                      addresses answering nukping and DNS queries (texts)
//   /network/dnsRecords/<server>/<name>     the names a name server knows, each with its address;
//                                           a name resolves when it is in etc/hosts or a reachable
//                                           configured server knows it (management interface up)
//
//   /vms                                    [{id, name, powerState "poweredOn"|"poweredOff",
//                                            autostart (stopped by the auto-start manager),
//                                            ignoresShutdown (stays on unless terminated)}]
//   /services/<name>                        {running, enabled, agent}: "SSH", "OrinShell" (init
//                                           scripts), "mgmtd", "tmga" (agent: true, services.sh)
//   /agents/restarts                        how many times the agents came back up after a stop
//   /lockdown/enabled, /lockdown/possible
//   /power/state                            "on" | "off" | "rebooting"
//   /power/history                          [{action "poweroff"|"reboot", forced}]
//   /smartCards/slots                       [{name, token}]; token null or {userId}
//   /users/<name>                           {passwordHash, uid, denied, expired, serviceAccount,
//                                            qal}: passwordHash = crypt(3) hash ("" = none; a
//                                            fresh host sets root's from kFactoryRootPassword),
//                                            qal = known to qal-cmd; a service account has no
//                                            console login
//   /passwordPolicy/minLength               a shorter new password is refused by PAM
//   /backups                                [{time, reason}] written by backup.sh
//   /coreDumps                              [{process, path}] written by nukbacktrace
//   /factoryResets                          count of firmwareConfig.py --reset-only runs
//
//   /faults/tools/<command words>           a fault for every tool run whose argument vector
//                                           holds these blank-separated words in this order,
//                                           the first being the tool's short name ("qal-cmd
//                                           qalsvc/auth/lockdown_mode_enter", "SSH status").
//                                           The entry with the most words wins:
//       {exitCode, stdout, stderr, hang (sleep until killed), times (remaining uses; absent = always)}
//   /faults/operations/<Service>.<Operation>   message of the HostCtlException that operation
//                                           throws ("NetworkInfo.SetNukIpv6Enabled"); with
//                                           {"unexpected": message} a std::runtime_error instead
nlohmann::json DefaultHostState();

// Root's password on a fresh or factory-reset host; the state keeps only its hash.
inline constexpr const char kFactoryRootPassword[] = "konu";

}  // namespace Konu::Sim
