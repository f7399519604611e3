// Nothing of its own: it carries the precompiled header of the tests.
