#include "XBee.h"

bool XBeeFrame::add(uint8_t value) {
  if (count == sizeof bytes) return false;
  bytes[count++] = value;
  return true;
}

void XBeeFrame::sendTo(Print& port) const {
  port.write((uint8_t)0x7E);
  port.write((uint8_t)0);
  port.write(count);
  uint8_t sum = 0;
  for (uint8_t i = 0; i < count; i++) {
    port.write(bytes[i]);
    sum = (uint8_t)(sum + bytes[i]);
  }
  port.write((uint8_t)(0xFF - sum));  // so that all bytes and the sum add up to FF
}
