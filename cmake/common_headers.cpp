// Source of the target that compiles the common headers.
