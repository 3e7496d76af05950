blink
