// Single packets to and from any peer.
#ifndef QUIRLO_UDP_H
#define QUIRLO_UDP_H

#include "Print.h"

class UDP : public Print {
 public:
  virtual uint8_t begin(uint16_t port) = 0;
  virtual int beginPacket(const char* host, uint16_t port) = 0;
  virtual int endPacket() = 0;
  // The size of the next packet, 0 if none has come.
  virtual int parsePacket() = 0;
  virtual int read() = 0;
  virtual void stop() = 0;
};

#endif
