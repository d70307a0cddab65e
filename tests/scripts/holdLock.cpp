#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

// holdLock FILE: locks a file as package managers do, says "locked", and keeps it until its input ends.
int main(int argc, char** argv)
{
    const int file = argc == 2 ? open(argv[1], O_RDWR | O_CREAT, 0640) : -1;
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (file < 0 || fcntl(file, F_SETLK, &lock) < 0) {
        std::perror("holdLock");
        return 1;
    }
    std::puts("locked");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
