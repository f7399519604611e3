"""Of the section, what the tests write by themselves."""

NAME = "ZanCore_363_253336"
SIZE = 253336
STAMPS = 59096  # of the own boat, int64 each
BOATS = 51092  # 80 bytes each; the name at 6
