// The USB personality of an 8-bit board as a disk:
// one interface of the mass storage class.
#ifndef QUIRLO_USB_DISK_DESC_H
#define QUIRLO_USB_DISK_DESC_H

// No vendor has given the sample a number; these stand for one.
#define USB_VENDOR_ID 0xFFFF
#define USB_PRODUCT_ID 0x0001
#define USB_PRODUCT_NAME "Quirlo quirlo"

// Endpoint numbers are unique over both directions; sizes are in bytes.
#define DISK_RX_ENDPOINT 3
#define DISK_RX_SIZE 64
#define DISK_TX_ENDPOINT 4
#define DISK_TX_SIZE 64

#endif
