Servo for 1.8.19
