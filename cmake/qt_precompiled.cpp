// Carries the precompiled header that the Qt rooms share; nothing else is built from it.
