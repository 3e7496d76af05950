// this file no longer used
