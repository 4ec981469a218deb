// Holds the compiled resources of the program.
