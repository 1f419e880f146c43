// The one file that TestHeaders.h is precompiled for.
