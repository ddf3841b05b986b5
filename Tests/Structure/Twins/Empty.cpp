// Nothing: what the compiler itself adds to a library shows by comparison with this one.
