// A library has a source.
