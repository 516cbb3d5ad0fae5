#include "driver/run.h"
#include "json/output.h"

int main(int argc, char** argv)
{
    int status = runTool(argc, argv, builtInStreams());
    console().flush();
    errorConsole().flush();
    return status;
}
