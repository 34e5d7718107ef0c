#include "companions/devservice/command_line/command_line.h"
#include "tools/command_line/program.h"

int main() {
    return ov::devservice::run_command_line(ov::command_line::words_of_process());
}
