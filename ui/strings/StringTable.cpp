// The English screen texts. Rows are in id order and the ids are fixed: screens fetch texts by
// these numbers. An alias row names the lower id whose words it shows, so a menu entry and the
// title of the screen it opens share one text.
#include "ui/strings/StringTable.h"

namespace Konu {
namespace {

constexpr StringEntry kTable[] = {
    {0, "Customize System/View Logs", -1},
    {1, "Shut Down/Restart", -1},
    {2, nullptr, -1},  // the product line, built at run time
    {3, "", -1},
    {4, "System Customization", -1},
    {5, "Configure Password", -1},
    {6, "Configure Lockdown Mode", -1},
    {7, "Configure Management Network", -1},
    {8, "Restart Management Network", -1},
    {9, "Test Management Network", -1},
    {10, "Network Restore Options", -1},
    {11, "View Support Information", -1},
    {12, "View System Logs", -1},
    {13, "Troubleshooting Options", -1},
    {14, "Reset System Configuration", -1},
    {15, "Configure Keyboard", -1},
    {16, "Restart Management Network: Error", -1},
    {17, "Enable Management Network: Error", -1},
    {18, "Disable Management Network: Error", -1},
    {19, "Management network interface cannot be found.", -1},
    {20, "Operation on the management network interface failed.", -1},
    {21, "To prevent unauthorized access to this system, set the password for the user.", -1},
    {22,
     "When enabled, lockdown mode prevents users from logging directly into this host. The host "
     "will only be accessible through this local console or an authorized centralized management "
     "application.",
     -1},
    {23, "To view or modify this host's management network settings in detail, press <Enter>.", -1},
    {24,
     "Restarting the management network interface may be required to restore networking or to "
     "renew a DHCP lease.\n\nRestarting the management network will result in a brief network "
     "outage that may temporarily affect running virtual machines.\n\nNote: If a renewed DHCP "
     "lease results in a new network identity (e.g., IP address or hostname), remote management "
     "software will be disconnected.",
     -1},
    {25,
     "To perform a brief network test, press <Enter>.\n\nBy default, this test will attempt to "
     "ping the configured default gateway, ping the configured primary and alternate DNS servers, "
     "and resolve the configured hostname.",
     -1},
    {26,
     "To view various network restore options like full network restore, move Management network "
     "from misconfigured DVS to standard switch or correct misconfigured DVS Management network "
     "port properties.",
     -1},
    {27, "Press the corresponding key to view a log.\nPress <Q> to return to this screen.", -1},
    {28,
     "To view various troubleshooting mode options like Enable Orin Shell, Enable SSH and Restart "
     "Agents.",
     -1},
    {29,
     "Warning!\n\nAll system parameters will be reverted to their software defaults, including any "
     "parameters customized by the hardware manufacturer. The root password will be reset to "
     "nothing, which may allow unauthorized access to your system. All virtual machines will be "
     "unregistered.\n\nThis operation requires a restart of the host. It is recommended to "
     "previously shut down or migrate running virtual machines off this host.",
     -1},
    {30,
     "Warning!\n\nAll custom extensions will be removed.\n\nThis operation requires a restart of "
     "the host. It is recommended to previously shut down or migrate running virtual machines off "
     "this host.",
     -1},
    {31, "Network identity acquired from DHCP server", -1},
    {32, "To select the layout type for the keyboard of this host, press <Enter>.", -1},
    {33, "Change default password to prevent unauthorized access", -1},
    {34, "Unknown", -1},
    {35, "IPv4 Address", -1},
    {36, "IPv6 Addresses", -1},
    {37, "Attributed addresses", -1},
    {38, "Default Gateway", -1},
    {39, "Subnet Mask", -1},
    {40, "Hostname", -1},
    {41, "Primary DNS Server", -1},
    {42, "Alternate DNS Server", -1},
    {43, "IPv6 DNS Server", -1},
    {44, nullptr, 7},
    {45, "Network Adapters", -1},
    {46, "VLAN (optional)", -1},
    {47, "IPv4 Configuration", -1},
    {48, "IPv6 Configuration", -1},
    {49, "IPv6 is enabled.", -1},
    {50, "IPv6 is disabled.", -1},
    {51, "DNS Configuration", -1},
    {52, "Custom DNS Suffixes", -1},
    {53,
     "The adapters listed here provide the default network connection to and from this host. When "
     "two or more adapters are used, connections will be fault-tolerant and outgoing traffic will "
     "be load-balanced.",
     -1},
    {54,
     "A VLAN is a virtual network within a physical network. Because several VLANs can co-exist on "
     "the same physical network segment, VLAN configuration and partitioning is often more "
     "flexible, better isolated, and less expensive than flat networks based on traditional "
     "physical topology.\n\nIf you are unsure how to configure or use a VLAN, it is safe to leave "
     "this option unset.",
     -1},
    {55,
     "This host can obtain an IPv4 address and other networking parameters automatically if your "
     "network includes a DHCP server. If not, ask your network administrator for the appropriate "
     "settings.",
     -1},
    {56,
     "This host can obtain IPv6 addresses and other networking parameters automatically if your "
     "network includes a DHCPv6 server or supports Router Advertisement.",
     -1},
    {57,
     "This host can be configured to support IPv6. A restart of the host will be required to "
     "enable or disable IPv6.",
     -1},
    {58, "The support for IPv6 will be enabled after the next reboot.", -1},
    {59,
     "If this host is configured using DHCP, DNS server addresses and other DNS parameters can be "
     "obtained automatically. If not, ask your network administrator for the appropriate settings.",
     -1},
    {60,
     "When using short, unqualified names, DNS queries will attempt to locate the specified host "
     "by appending the suffixes listed here in the order shown until a match is found or the list "
     "is exhausted.\n\nIf no suffixes are specified here, a default suffix list is derived from "
     "the local domain name.",
     -1},
    {61, "Network Configuration Error", -1},
    {62, nullptr, 10},
    {63, "Restore Network Settings", -1},
    {64, "Restore Standard Switch", -1},
    {65, "Restore DVS", -1},
    {66,
     "Restoring the network settings will revert all network configuration and will automatically "
     "configure the network with defaults.\n\nRestoring the network settings will stop all the "
     "running virtual machines on the host.",
     -1},
    {67,
     "All management network and associated uplinks can be moved onto a new vSwitch in order to "
     "restore network connectivity to Pallas. All interfaces apart from management interface will "
     "be disabled.\nTry Restore DVS option to manually repair misconfigured DVS.",
     -1},
    {68,
     "Reconfigure properties of misconfigured DVS Management network port.\n\nA new DVS host local "
     "port will be created with the reconfigured properties and the management network will be "
     "moved to this new port. All other properties will be cloned from original DVPort. This "
     "operation is available only for Corbel DVS",
     -1},
    {69, nullptr, 45},
    {70,
     "Select the adapters for this host's default management network connection. Use two or more "
     "adapters for fault-tolerance and load-balancing.",
     -1},
    {71, "Network Adapters: Warning", -1},
    {72, "One or more of the selected adapters are already used for other connections.", -1},
    {73, "Remove these adapters from their current connections?", -1},
    {74, "Invalid IP address", -1},
    {75, "Please reenter a valid IPv4 address (x.x.x.x).", -1},
    {76, "Please reenter a valid IPv6 network address (x:x:x/x).", -1},
    {77, "Invalid IP or IPv6 address.", -1},
    {78, "Invalid subnet", -1},
    {79, "Please reenter a valid subnet (x.x.x.x).", -1},
    {80, "Invalid scope", -1},
    {81, "Cannot add a link-local address as static address.", -1},
    {82, "Invalid gateway address", -1},
    {83, "Please reenter a valid gateway address (x.x.x.x).", -1},
    {84, "Please reenter a valid IPv6 gateway address (x:x:x).", -1},
    {85, "Link-local addresses are not supported as default gateway.", -1},
    {86, "Invalid DNS server address", -1},
    {87, "Please reenter a valid DNS server address (IP or IPv6).", -1},
    {88, "Invalid VLAN ID", -1},
    {89, "Please reenter a valid VLAN ID (1-4095).", -1},
    {90,
     "You entered a VLAN ID of 4095. This host will receive all VLAN-tagged frames and be able to "
     "send any VLAN-tagged frame.\n\nUnless this is specifically intended, it is best not to "
     "configure a VLAN ID of 4095.",
     -1},
    {91, "If you are unsure how to configure or use a VLAN, it is safe to leave this option unset.", -1},
    {92, "VLAN ID (1-4094, or 4095 to access all VLANs):", -1},
    {93, nullptr, 47},
    {94,
     "This host can obtain network settings automatically if your network includes a DHCP server. "
     "If it does not, the following settings must be specified:",
     -1},
    {95, "Disable IPv4 configuration for management network", -1},
    {96, "Use dynamic IPv4 address and network configuration", -1},
    {97, "Set static IPv4 address and network configuration:", -1},
    {98, nullptr, 48},
    {99,
     "This host can obtain network settings automatically if your network supports Stateless "
     "Address Autoconfiguration (SLAAC) or includes a DHCPv6 server. If it does not, static "
     "settings must be specified:",
     -1},
    {100, "Disable IPv6 (restart required)", -1},
    {101, "Use dynamic IPv6 address and network configuration", -1},
    {102, "Use DHCPv6", -1},
    {103, "Set static IPv6 address and network configuration", -1},
    {104, "Static address", -1},
    {105, "Default gateway", -1},
    {106, "Warning", -1},
    {107, "No adapter", -1},
    {108, "Automatic", -1},
    {109, "None", -1},
    {110, "Manual", -1},
    {111, "Set", -1},
    {112, "Not set", -1},
    {113, "Enabled", -1},
    {114, "Disabled", -1},
    {115, "Done.", -1},
    {116, nullptr, 51},
    {117,
     "This host can only obtain DNS settings automatically if it also obtains its IP "
     "configuration automatically.",
     -1},
    {118, "Obtain DNS server addresses and a hostname automatically", -1},
    {119, "Use the following DNS server addresses and hostname:", -1},
    {120,
     "DNS queries will attempt to locate hosts by appending the suffixes specified here to short, "
     "unqualified names.\n\nUse spaces or commas to separate multiple entries.",
     -1},
    {121, "Suffixes:", -1},
    {122, "Restart Management Network: Confirm", -1},
    {123,
     "Restarting the management network will result in a brief network outage. It may disconnect "
     "remote management software and affect running virtual machines.",
     -1},
    {124, "Restart management network now?", -1},
    {125, nullptr, 8},
    {126, "Please wait while the management network restarts.", -1},
    {127, "Stopping management network.", -1},
    {128, "Starting management network.", -1},
    {129, "IP address is ", -1},
    {130, nullptr, 64},
    {131,
     "All management network and associated uplinks can be moved onto a new vSwitch in order to "
     "restore network connectivity to Pallas.",
     -1},
    {132, "Move the management network onto a standard switch?", -1},
    {133, "To manage this host, go to:", -1},
    {134,
     "Warning: DHCP lookup failed. You may be unable to access this system until you customize "
     "its network configuration.",
     -1},
    {135,
     "Warning: Host is running in audit mode. Your configuration will not be persistent across "
     "reboots. Please contact support.",
     -1},
    {136, "Authentication Required", -1},
    {137, "Enter an authorized login name and password for ", -1},
    {138, "Enter the smart card login PIN for ", -1},
    {139, "Authentication Denied", -1},
    {140, "Direct console access has been disabled by the administrator for ", -1},
    {141, "Login Name:", -1},
    {142, "Login Id:", -1},
    {143, "Password:", -1},
    {144, "PIN:", -1},
    {145, "Authentication failed", -1},
    {146, "Invalid login or password.", -1},
    {147, "User does not have permission to login to KONU.", -1},
    {148, "Password has expired.\nYou will be prompted to set a new password and then login again.", -1},
    {149, nullptr, 5},
    {150, "Setting the password will prevent unauthorized access to this host.", -1},
    {151, "Old Password:", -1},
    {152, "New Password:", -1},
    {153, "Confirm Password:", -1},
    {154, "Configure Password: Error", -1},
    {155, "Configure Password: Warning", -1},
    {156, "The old password you entered is incorrect", -1},
    {157, "The new password and the confirmed password do not match.", -1},
    {158, "Empty passwords are not allowed.", -1},
    {159, "New password is same as old password. Are you sure?", -1},
    {160,
     "The password change operation failed.\nPlease ensure that your password meets the "
     "complexity criteria set by the system.",
     -1},
    {161, nullptr, 1},
    {162,
     "Remote management software is recommended to safely shut down or restart this host.\n\nBy "
     "default, running virtual machines will be powered off, suspended, or shut down according to "
     "the current system shutdown policy.\nIf this host is part of an HA cluster, then HA will "
     "not restart these VMs unless they are forcefully terminated.",
     -1},
    {163, "Forcefully terminate running VMs, if any ...", -1},
    {164, "Shut Down Host", -1},
    {165, "Shutdown in progress...", -1},
    {166, "Warning: VMs running on the host", -1},
    {167,
     "Host has VMs running. Are you sure you want to shutdown/restart the host or restore the "
     "network.",
     -1},
    {168, "Restart Host", -1},
    {169, "Restart in progress...", -1},
    {170, "Reset System Configuration: Confirm", -1},
    {171,
     "Warning! All system parameters will be reverted to their software defaults, and host "
     "configuration will be lost.",
     -1},
    {172, "Reset System Configuration now?", -1},
    {173, nullptr, 14},
    {174, "Please wait while the default settings are restored.", -1},
    {175, "Default settings are restored. Press <Enter> to restart your host.", -1},
    {176, "Remove Custom Extensions: Confirm", -1},
    {177, "Warning! All custom extensions will be removed.", -1},
    {178, "Remove custom extensions now?", -1},
    {179, "Remove Custom Extensions", -1},
    {180, "Please wait while the custom extensions are removed.", -1},
    {181, "Custom extensions have been removed. Press <Enter> to restart your host.", -1},
    {182, "Restore Network Factory Settings", -1},
    {183, "This option will reset the host network configuration to its default setting.", -1},
    {184, "Are you sure you want to reset the host network configuration?", -1},
    {185, "Restore to default blocked setting (unblocked) ", -1},
    {186, "Select DVS uplinks", -1},
    {187, "Please enter a valid VLAN ID (1-4094).", -1},
    {188, nullptr, 65},
    {189,
     "Enter the properties for new DVS host local port that will be created.\nAll other "
     "properties will be taken as default.",
     -1},
    {190, "Restore DVS: Error", -1},
    {191, "Unable to restore DVS. Check logs for details.", -1},
    {192, "Unable to restore DVS. Restore DVS operation cannot be performed on 3rd party DVS.", -1},
    {193, "DVS Uplinks", -1},
    {194, "Select the DVS Uplinks (one or more) to be used by management nuknic", -1},
    {195, "DVS Uplinks: Warning", -1},
    {196, "No uplinks were selected.", -1},
    {197, "Do you want to continue?", -1},
    {198, "No DVS Uplinks: Error", -1},
    {199, "No uplinks are configured on the host for this DVS.", -1},
    {200, nullptr, 63},
    {201, "Please wait while the factory network settings are restored.", -1},
    {202, "Powering Off VMs.", -1},
    {203, "Auto-configuring network.", -1},
    {204, "Configure Management Network: Confirm", -1},
    {205,
     "You have made changes to the host's management network.\nApplying these changes may result "
     "in a brief network outage, disconnect remote management software and affect running virtual "
     "machines. In case IPv6 has been enabled or disabled this will restart your host.",
     -1},
    {206, "Apply changes and restart management network?", -1},
    {207, "Apply changes and reboot host?", -1},
    {208, nullptr, 9},
    {209,
     "By default, this test will attempt to ping your default gateway and DNS servers, and "
     "resolve your hostname.",
     -1},
    {210, "Ping Address", -1},
    {211, "Resolve Hostname", -1},
    {212, "Testing Management Network", -1},
    {213, "You may interrupt the test at any time.", -1},
    {214, "Pinging address", -1},
    {215, "Resolving hostname", -1},
    {216, "Failed.", -1},
    {217, "OK.", -1},
    {218, "Troubleshooting Mode Options", -1},
    {219, "Enable Orin Shell", -1},
    {220, "Disable Orin Shell", -1},
    {221, "Enable SSH", -1},
    {222, "Disable SSH", -1},
    {223, "Orin Shell", -1},
    {224, "SSH Support", -1},
    {225, "Modify Orin Shell and SSH timeouts", -1},
    {226, "Modify KONU idle timeout", -1},
    {227, "Restart Management Agents", -1},
    {228, "Change current state of the Orin Shell", -1},
    {229, "Change current state of SSH", -1},
    {230, "Orin Shell is Enabled", -1},
    {231, "Orin Shell is Disabled", -1},
    {232, "SSH is Enabled", -1},
    {233, "SSH is Disabled", -1},
    {234,
     "The management agents are the programs that allow remote management software to monitor and "
     "control this host.\n\nRestarting the management agents will disconnect all remote "
     "management software and will affect all running services.",
     -1},
    {235,
     "Modify the number of minutes that can elapse before you must log in after Orin Shell access "
     "is enabled and the idle timeout for interactive sessions.",
     -1},
    {236, "Modify the number of idle minutes that can elapse before you must log in again in KONU.", -1},
    {237, "Restart Management Agents: Confirm", -1},
    {238,
     "{color:red}Warning! Restarting the management agents will disconnect all remote management "
     "software. This will affect all running services.\nCollection of extra troubleshooting "
     "information can take a noticeable amount of time.{/color}",
     -1},
    {239, "Restart management agents now?", -1},
    {240, "Stopping management agents.", -1},
    {241, "Starting management agents.", -1},
    {242, "Collect extra troubleshooting information", -1},
    {243, "Collecting host agent live core information.", -1},
    {244, "Please, wait ...", -1},
    {245, nullptr, 6},
    {246, "When enabled, lockdown mode prevents users from logging directly into this host.", -1},
    {247, "Enable lockdown mode", -1},
    {248,
     "If you are having difficulty using your keyboard, choose a layout that matches your "
     "keyboard from the options below.",
     -1},
    {249, "Enable IPv6: Restart Required", -1},
    {250, "This host must be restarted before IPv6 will be enabled.", -1},
    {251, "Disable IPv6: Restart Required", -1},
    {252, "This host must be restarted before IPv6 will be disabled.", -1},
    {253, "Router advertised", -1},
    {254, "DHCP", -1},
    {255, "STATIC", -1},
    {256, "AUTOCONF", -1},
    {257, "Waiting for DHCP...", -1},
    {258, "Set the timeouts for Orin Shell access (local and remote)", -1},
    {259,
     "Set the number of minutes that can elapse before you must log in after Orin Shell is "
     "enabled (the availability timeout) and the timeout for idle interactive sessions.\n\nAfter "
     "the availability timeout expires any running shell instances will remain, but new sessions "
     "will not be allowed.  Changes to idle timeout will apply on next login, but will not affect "
     "any existing sessions.\n\nValues are in minutes. Use zero to disable timeouts. Maximum "
     "value is 1440 minutes.",
     -1},
    {260, "Availability timeout", -1},
    {261, "Idle timeout", -1},
    {262, "Invalid timeout value", -1},
    {263, "Timeout value must be between 0 (disabled) and 1440 minutes", -1},
    {264, "Set idle timeout for KONU access", -1},
    {265,
     "Set the number of idle minutes that can elapse before you must log in again in "
     "KONU.\n\nValue is in minutes. Use zero to disable the timeout. Maximum value is 1440 "
     "minutes.",
     -1},
    {266, "KONU idle timeout", -1},
};

// A transcription fault (a skipped or doubled row, an alias to a row without text) fails the
// build rather than showing the wrong words on a screen.
constexpr bool TableIsWellFormed() {
  if (sizeof(kTable) / sizeof(kTable[0]) != kLastStringId + 1) return false;
  for (uint32_t i = 0; i <= kLastStringId; ++i) {
    const StringEntry& row = kTable[i];
    if (row.id != i) return false;
    if (row.sameAs >= 0) {
      if (row.text != nullptr || static_cast<uint32_t>(row.sameAs) >= i) return false;
      const StringEntry& target = kTable[row.sameAs];
      if (target.text == nullptr || target.sameAs >= 0) return false;
    } else if (row.text == nullptr && i != kProductLineId) {
      return false;
    }
  }
  return kTable[kProductLineId].text == nullptr && kTable[kEmptyStringId].text[0] == '\0';
}
static_assert(TableIsWellFormed());

}  // namespace

std::span<const StringEntry> StringTable() { return kTable; }

}  // namespace Konu
