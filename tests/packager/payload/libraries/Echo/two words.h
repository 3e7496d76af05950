blank
