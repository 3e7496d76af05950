// INF files of the forms that the driver code meets, for tests.
#pragma once

#include <string>

// The serial driver's own file, as a payload carries it, and its two lists of devices.
inline const std::string kDriverInf =
    "; USB serial\r\n"
    "[Version]\r\n"
    "Signature   = \"$Windows NT$\"\r\n"
    "Class       = Ports\r\n"
    "ClassGuid   = {4D36E978-E325-11CE-BFC1-08002BE10318}\r\n"
    "Provider    = %MFG%\r\n"
    "CatalogFile = cdcacm.cat\r\n"
    "DriverVer   = 01/02/2014,1.0.0.0 ; month first\r\n"
    "\r\n"
    "[Manufacturer]\r\n"
    "%MFG% = DeviceList, NTamd64\r\n"
    "\r\n"
    "[DeviceList]\r\n"
    "%DESCRIPTION% = DriverInstall, USB\\Class_02&SubClass_02&Prot_01\r\n"
    "\r\n"
    "[DeviceList.NTamd64]\r\n"
    "%DESCRIPTION% = DriverInstall, USB\\Class_02&SubClass_02&Prot_01\r\n"
    "\r\n"
    "[Strings]\r\n"
    "MFG = \"Quirlo\"\r\n"
    "DESCRIPTION = \"USB Serial\"\r\n";

// Its hardware id, and its [Version] text.
inline const std::string kHardwareId = "USB\\Class_02&SubClass_02&Prot_01";
inline const std::string kDriverVersionText =
    "$Windows NT$Ports{4D36E978-E325-11CE-BFC1-08002BE10318}Quirlocdcacm.cat01/02/2014,1.0.0.0";

// A file with this [Version] section beside its signature and with this text behind it.
inline std::string InfWith(const std::string& version_lines, const std::string& rest = "") {
  return "[Version]\nSignature=\"$Windows NT$\"\n" + version_lines + rest;
}

// The system's own file for serial devices, from a binary and the lines of its UsbSerial_AddReg.
inline std::string SystemInf(const std::string& binary, const std::string& add_reg) {
  return InfWith("Class=Ports\nProvider=%WINDOWS%\n",
                 "[UsbSerial_Service_Install]\n"
                 "ServiceType=1\n"
                 "ServiceBinary=" +
                     binary +
                     "\n"
                     "[UsbSerial_AddReg]\n" +
                     add_reg + "[Strings]\nWINDOWS=\"The system\"\n");
}
inline const std::string kPortPageLine =
    "HKR,,EnumPropPages32,,\"MsPorts.dll,SerialPortPropPageProvider\"\n";
inline const std::string kSystemDriverInf =
    SystemInf("%12%\\usbser.sys", "HKR,,NTMPDriver,,\"usbser.sys\"\n" + kPortPageLine);

// The same file of a system that doesn't serve the boards: an older one without the port page.
inline const std::string kOlderSystemInf =
    SystemInf("%12%\\usbser.sys", "HKR,,DevLoader,,*ntkern\nHKR,,NTMPDriver,,usbser.sys\n");
