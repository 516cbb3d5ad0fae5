// The zyntelbin2trace run: command line, the input files named or
// discovered, their conversion into one trace, and the console report.
#pragma once

// Returns the exit status: 0 done, 1 usage error, 2 no input could be read
// or the trace could not be written.
int runTraceTool(int argc, const char* const* argv);
