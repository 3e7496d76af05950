// Builds the frames that a radio module takes: a start, a length, the bytes, a sum.
#ifndef XBee_h
#define XBee_h

#include <Arduino.h>

class XBeeFrame {
 public:
  void begin() { count = 0; }

  // False if the frame is full.
  bool add(uint8_t value);

  // Sends the frame to a port.
  void sendTo(Print& port) const;

 private:
  uint8_t bytes[100];
  uint8_t count = 0;
};

#endif
