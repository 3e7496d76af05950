// Waits for peers. What is written to it goes to every connected peer.
#ifndef QUIRLO_SERVER_H
#define QUIRLO_SERVER_H

#include "Print.h"

class Server : public Print {
 public:
  virtual void begin() = 0;
};

#endif
