// The USB personality of an 8-bit board as a channel of raw reports:
// one interface with reports of 64 bytes each way.
#ifndef QUIRLO_USB_RAWHID_DESC_H
#define QUIRLO_USB_RAWHID_DESC_H

// No vendor has given the sample a number; these stand for one.
#define USB_VENDOR_ID 0xFFFF
#define USB_PRODUCT_ID 0x0005
#define USB_PRODUCT_NAME "Quirlo raw"

// Endpoint numbers are unique over both directions; sizes are in bytes.
#define RAW_TX_ENDPOINT 3
#define RAW_TX_SIZE 64
#define RAW_RX_ENDPOINT 4
#define RAW_RX_SIZE 64

#endif
