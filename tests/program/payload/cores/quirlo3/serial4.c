serial4
