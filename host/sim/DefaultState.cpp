// The state of a freshly created simulated host.
#include "host/sim/DefaultState.h"

namespace Konu::Sim {

nlohmann::json DefaultHostState() {
  // Kept as one JSON text so it reads like the host.json it becomes.
  static const char* const kFreshHost = R"json({
  "host": {
    "hostname": "konu-host",
    "domain": "example.test",
    "welcomeMessage": "",
    "systemAlert": ""
  },
  "hardware": {
    "vendor": "Tessera Computing Inc.",
    "product": "Tessera TX740 Server",
    "cpuPackages": 2,
    "cpuModel": "Sample(R) Server(R) 8-Core CPU @ 2.10GHz",
    "memoryPages": 33554432,
    "pageSize": 4096
  },
  "version": {
    "product": "Orin NuKernel",
    "version": "8.0.2",
    "kernelVersion": "8.0.2",
    "build": "21203435"
  },
  "bootOption": 0,
  "support": {"start": "2026-01-15", "period": "3 years", "serviceTag": "TX7-40321", "assetTag": "LAB-0042"},
  "firmware": {"bios": "2.14.1", "bmc": "6.10.30", "cpld": "1.0.7", "plsa": "3.2.0"},
  "keyboard": {
    "current": "US Default",
    "layouts": ["Belgian", "Brazilian", "Croatian", "Czechoslovakian", "Danish", "Estonian", "Finnish",
                "French", "German", "Greek", "Icelandic", "Italian", "Japanese", "Latin American",
                "Norwegian", "Polish", "Portuguese", "Russian", "Slovenian", "Spanish", "Swedish",
                "Swiss French", "Swiss German", "Turkish", "UK", "US Default", "US Dvorak"]
  },
  "advancedOptions": {
    "/UserVars/KonuTimeOut": {"type": "integer", "value": 600, "default": 600, "min": 0, "max": 86400,
                              "description": "Idle time in seconds before the local console logs out"},
    "/UserVars/OrinShellTimeOut": {"type": "integer", "value": 0, "default": 0, "min": 0, "max": 86400,
                                   "description": "Time in seconds the shell stays available"},
    "/UserVars/OrinShellInteractiveTimeOut": {"type": "integer", "value": 0, "default": 0, "min": 0,
                                              "max": 86400,
                                              "description": "Idle time in seconds before a shell logs out"},
    "/UserVars/SuppressShellWarning": {"type": "integer", "value": 0, "default": 0, "min": 0, "max": 1,
                                       "description": "Do not warn that the shell is enabled"},
    "/UserVars/HostClientWelcomeMessage": {"type": "string", "value": "", "default": "",
                                           "description": "Welcome message of the host client"},
    "/Net/TcpipHeapSize": {"type": "integer", "value": 0, "default": 0, "min": 0, "max": 32,
                           "description": "Initial size of the TCP/IP heap in megabytes"}
  },
  "userOptions": {},
  "firewall": {
    "sshServer": {"enabled": false},
    "sshClient": {"enabled": false},
    "dhcp": {"enabled": true},
    "dns": {"enabled": true}
  },
  "network": {
    "managementInterface": "nuk0",
    "ipv6Enabled": true,
    "ipv6EnabledAfterReboot": true,
    "nukNics": {
      "nuk0": {
        "mac": "02:4b:4e:6a:10:05",
        "portGroup": "Management Network",
        "switch": "vSwitch0",
        "up": true,
        "dhcpBound": false,
        "dnsFromDhcp": false,
        "ipv4": {"dhcp": false, "none": false, "address": "10.0.0.5", "netmask": "255.255.255.0"},
        "ipv6": {
          "dhcp": false,
          "routerAdvertised": false,
          "addresses": [
            {"address": "fe80::4b:4eff:fe6a:1005", "prefixLength": 64},
            {"address": "2001:db8:10::5", "prefixLength": 64},
            {"address": "2001:db8:10::50", "prefixLength": 64}
          ]
        }
      }
    },
    "pnics": {
      "nic0": {"label": "Onboard LAN 1", "mac": "02:4b:4e:8a:40:10", "linkUp": true,
               "speedMbps": 10000, "duplex": "Full", "driver": "virtio_net"},
      "nic1": {"label": "Onboard LAN 2", "mac": "02:4b:4e:8a:40:11", "linkUp": true,
               "speedMbps": 10000, "duplex": "Full", "driver": "virtio_net"},
      "nic2": {"label": "Slot 3 Port 1", "mac": "02:4b:4e:8a:40:12", "linkUp": true,
               "speedMbps": 1000, "duplex": "Full", "driver": "veth"},
      "nic3": {"label": "Slot 3 Port 2", "mac": "02:4b:4e:8a:40:13", "linkUp": false,
               "speedMbps": 0, "duplex": "Half", "driver": "veth"}
    },
    "vswitches": {
      "vSwitch0": {
        "uplinks": ["nic0", "nic1"],
        "portGroups": {
          "Management Network": {
            "vlanId": 0,
            "teaming": {"maxActiveUplinks": 1, "explicitOrder": true,
                        "activeUplinks": ["nic0"], "standbyUplinks": ["nic1"]}
          },
          "VM Network": {
            "vlanId": 0,
            "teaming": {"maxActiveUplinks": 2, "explicitOrder": false,
                        "activeUplinks": ["nic0", "nic1"], "standbyUplinks": []}
          }
        }
      }
    },
    "dvSwitches": {},
    "routing": {
      "defaultTcpipStack": {"ipv4Gateway": "10.0.0.1", "ipv6Gateway": "2001:db8:10::1"}
    },
    "dns": {
      "defaultTcpipStack": {
        "nameServers": ["10.0.0.2", "10.0.0.3"],
        "searchDomains": ["example.test"],
        "fromDhcp": false
      }
    },
    "dhcpServer": {
      "available": true,
      "lease": {"address": "10.0.0.77", "netmask": "255.255.255.0", "gateway": "10.0.0.1",
                "nameServers": ["10.0.0.2", "10.0.0.3"]},
      "ipv6Lease": {"addresses": [{"address": "2001:db8:10::77", "prefixLength": 128}],
                    "nameServers": ["2001:db8:10::2"]}
    },
    "reachable": ["10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.0.5", "2001:db8:10::1", "127.0.0.1"],
    "dnsRecords": {
      "10.0.0.2": {"konu-host.example.test": "10.0.0.5", "gateway.example.test": "10.0.0.1"},
      "10.0.0.3": {"konu-host.example.test": "10.0.0.5", "gateway.example.test": "10.0.0.1"},
      "2001:db8:10::2": {"konu-host.example.test": "2001:db8:10::5"}
    }
  },
  "vms": [
    {"id": 1, "name": "build-agent-01", "powerState": "poweredOn", "autostart": true,
     "ignoresShutdown": false},
    {"id": 2, "name": "db-replica", "powerState": "poweredOn", "autostart": false,
     "ignoresShutdown": false}
  ],
  "services": {
    "SSH": {"running": false, "enabled": false},
    "OrinShell": {"running": false, "enabled": false},
    "mgmtd": {"running": true, "enabled": true, "agent": true},
    "tmga": {"running": true, "enabled": true, "agent": true}
  },
  "agents": {"restarts": 0},
  "lockdown": {"enabled": false, "possible": true},
  "power": {"state": "on", "history": []},
  "smartCards": {
    "slots": [{"name": "Reader 0", "token": null}]
  },
  "users": {
    "root": {"passwordHash": "", "uid": 0, "denied": false, "expired": false, "serviceAccount": false,
             "qal": true},
    "konu": {"passwordHash": "", "uid": 201, "denied": false, "expired": false, "serviceAccount": true,
             "qal": true}
  },
  "passwordPolicy": {"minLength": 1},
  "backups": [],
  "coreDumps": [],
  "factoryResets": 0,
  "faults": {
    "tools": {},
    "operations": {}
  }
})json";
  static const nlohmann::json kParsed = nlohmann::json::parse(kFreshHost);
  return kParsed;
}

}  // namespace Konu::Sim
