// Console text captured while name look-ups warn.
#pragma once

#include <string>

#include "json/output.h"

struct PrinterRun {
    PrinterRun()
    {
        consoleOut.attachString(&console);
        redirectConsole(&consoleOut, nullptr);
    }
    ~PrinterRun() { redirectConsole(nullptr, nullptr); }

    std::string console;
    Output consoleOut;
};
