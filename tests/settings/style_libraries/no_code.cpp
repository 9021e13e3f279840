// A library of resources still needs a source file.
