// Prints the broker's operations in the order of their slots. `script/check/abi --freeze` stores
// the list.
#include <cstdio>

#include "tests/abi/OperationTable.h"

int main() {
    for (const std::string& operation : operationTable()) {
        std::puts(operation.c_str());
    }
}
