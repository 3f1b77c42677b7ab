#include "taskExecutor/DirectInvoker.h"

namespace TPL {

CDirectInvoker& CDirectInvoker::GetInstance() {
    static CDirectInvoker instance;
    return instance;
}

}  // namespace TPL
