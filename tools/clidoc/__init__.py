"""Manual page and completions from the help of a program."""
