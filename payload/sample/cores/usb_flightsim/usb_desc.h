// The USB personality of an 8-bit board as flight simulator controls:
// one interface that carries named values.
#ifndef QUIRLO_USB_FLIGHTSIM_DESC_H
#define QUIRLO_USB_FLIGHTSIM_DESC_H

// No vendor has given the sample a number; these stand for one.
#define USB_VENDOR_ID 0xFFFF
#define USB_PRODUCT_ID 0x0002
#define USB_PRODUCT_NAME "Quirlo flight"

// Endpoint numbers are unique over both directions; sizes are in bytes.
#define SIM_RX_ENDPOINT 1
#define SIM_RX_SIZE 64
#define SIM_TX_ENDPOINT 2
#define SIM_TX_SIZE 64

#endif
