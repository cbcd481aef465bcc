ROWS = []
