// The USB personality of an 8-bit board as a keyboard, mouse and joystick:
// three interfaces of the human interface class.
#ifndef QUIRLO_USB_HID_DESC_H
#define QUIRLO_USB_HID_DESC_H

// No vendor has given the sample a number; these stand for one.
#define USB_VENDOR_ID 0xFFFF
#define USB_PRODUCT_ID 0x0003
#define USB_PRODUCT_NAME "Quirlo input"

// Endpoint numbers are unique over both directions; sizes are in bytes.
#define KEYBOARD_ENDPOINT 3
#define KEYBOARD_SIZE 8
#define MOUSE_ENDPOINT 4
#define MOUSE_SIZE 8
#define JOYSTICK_ENDPOINT 5
#define JOYSTICK_SIZE 16

#endif
