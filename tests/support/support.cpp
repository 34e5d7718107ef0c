// Keeps the library non-empty until its first helper moves in.
