// The USB personality of an 8-bit board as a serial port:
// the two interfaces of the communications class.
#ifndef QUIRLO_USB_SERIAL_DESC_H
#define QUIRLO_USB_SERIAL_DESC_H

// No vendor has given the sample a number; these stand for one.
#define USB_VENDOR_ID 0xFFFF
#define USB_PRODUCT_ID 0x0006
#define USB_PRODUCT_NAME "Quirlo serial"

// Endpoint numbers are unique over both directions; sizes are in bytes.
#define CDC_EVENT_ENDPOINT 2
#define CDC_EVENT_SIZE 16
#define CDC_RX_ENDPOINT 3
#define CDC_RX_SIZE 64
#define CDC_TX_ENDPOINT 4
#define CDC_TX_SIZE 64

#endif
