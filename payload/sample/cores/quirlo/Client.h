// One connection to a peer, whatever carries it.
#ifndef QUIRLO_CLIENT_H
#define QUIRLO_CLIENT_H

#include "Print.h"

class Client : public Print {
 public:
  // 1 once the connection stands, else 0.
  virtual int connect(const char* host, uint16_t port) = 0;
  virtual uint8_t connected() = 0;
  virtual int available() = 0;
  virtual int read() = 0;
  virtual void stop() = 0;
};

#endif
