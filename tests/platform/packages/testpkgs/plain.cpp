// A shared library that is not a package: it declares nothing.
extern "C" int TpkPlainValue() { return 7; }
