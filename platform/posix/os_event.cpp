// The named event of the end of a run, as a POSIX named semaphore: a waiting
// process opens the same name and waits on it. A set event stays set.
#include <fcntl.h>
#include <semaphore.h>

#include "platform/os.h"

namespace os {

bool set_named_event(const std::string& name) {
    std::string sem_name = "/" + name;
    for (std::size_t i = 1; i < sem_name.size(); ++i)
        if (sem_name[i] == '/') sem_name[i] = '_';
    sem_t* sem = ::sem_open(sem_name.c_str(), O_CREAT, 0600, 0);
    if (sem == SEM_FAILED) return false;
    int value = 0;
    bool ok = ::sem_getvalue(sem, &value) == 0 && (value > 0 || ::sem_post(sem) == 0);
    ::sem_close(sem);
    return ok;
}

}  // namespace os
