// Contains nothing and links Qt Core and zlib: the cost of loading any such library.
