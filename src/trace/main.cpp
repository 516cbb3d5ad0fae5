#include "json/output.h"
#include "trace/trace_run.h"

int main(int argc, char** argv)
{
    int status = runTraceTool(argc, argv);
    console().flush();
    errorConsole().flush();
    return status;
}
