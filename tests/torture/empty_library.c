/* A library that does nothing: what the system takes to load any. */
int doNothing(void);
int doNothing(void) {
    return 0;
}
