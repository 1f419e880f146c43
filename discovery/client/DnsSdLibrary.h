#pragma once

/// Readies the system's service discovery library; to be called before anything else of it. Calling
/// it again changes nothing.
void prepareDnsSdLibrary();
