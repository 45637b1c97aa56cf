// Exists only to build the precompiled header that the Qt rooms share.
