// moves
