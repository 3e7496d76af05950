// The USB personality of an 8-bit board as a MIDI instrument:
// one streaming interface of the audio class.
#ifndef QUIRLO_USB_MIDI_DESC_H
#define QUIRLO_USB_MIDI_DESC_H

// No vendor has given the sample a number; these stand for one.
#define USB_VENDOR_ID 0xFFFF
#define USB_PRODUCT_ID 0x0004
#define USB_PRODUCT_NAME "Quirlo midi"

// Endpoint numbers are unique over both directions; sizes are in bytes.
#define MIDI_TX_ENDPOINT 3
#define MIDI_TX_SIZE 64
#define MIDI_RX_ENDPOINT 4
#define MIDI_RX_SIZE 64

#endif
