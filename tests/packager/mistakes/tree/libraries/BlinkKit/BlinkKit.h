// blinks
