// A library the package tpk_needslib links, kept where the loader does not look.
int TpkGoneValue() { return 42; }
