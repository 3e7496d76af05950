Servo for 1.8.9
