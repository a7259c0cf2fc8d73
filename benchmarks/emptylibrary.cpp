// Linked to Qt Core and zlib, and nothing else: what loading any library of this kind costs.
