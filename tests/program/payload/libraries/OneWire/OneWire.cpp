OneWire
