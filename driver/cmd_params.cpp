#include "driver/cmd_params.h"

cmd_params::~cmd_params() {
    if (diag_stream != os::invalid_file) os::file_close(diag_stream);
}
