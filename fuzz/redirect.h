// Included before everything else in the sources of the tool and the board library that the fuzzers are made of:
// every call that would leave the process goes to a stand-in of the fuzzers' own instead. So whatever a fuzzer
// makes up, on any host and also for root, no file is touched, no command run, no process signalled and no time
// spent. scripts/fuzz checks that no other call of this kind is left.
#ifndef FUZZ_REDIRECT_H
#define FUZZ_REDIRECT_H

#pragma redefine_extname access fuzz_access
#pragma redefine_extname clock_gettime fuzz_clock_gettime
#pragma redefine_extname close fuzz_close
#pragma redefine_extname faccessat fuzz_faccessat
#pragma redefine_extname fchmod fuzz_fchmod
#pragma redefine_extname flock fuzz_flock
#pragma redefine_extname fopen fuzz_fopen
#pragma redefine_extname fstat fuzz_fstat
#pragma redefine_extname fstatat fuzz_fstatat
#pragma redefine_extname fsync fuzz_fsync
#pragma redefine_extname getenv fuzz_getenv
#pragma redefine_extname getpid fuzz_getpid
#pragma redefine_extname gettimeofday fuzz_gettimeofday
#pragma redefine_extname ioctl fuzz_ioctl
#pragma redefine_extname lseek fuzz_lseek
#pragma redefine_extname mkdirat fuzz_mkdirat
#pragma redefine_extname nftw fuzz_nftw
#pragma redefine_extname open fuzz_open
#pragma redefine_extname openat fuzz_openat
#pragma redefine_extname pclose fuzz_pclose
#pragma redefine_extname popen fuzz_popen
#pragma redefine_extname read fuzz_read
#pragma redefine_extname remove fuzz_remove
#pragma redefine_extname renameat fuzz_renameat
#pragma redefine_extname sigqueue fuzz_sigqueue
#pragma redefine_extname sleep fuzz_sleep
#pragma redefine_extname system fuzz_system
#pragma redefine_extname unlinkat fuzz_unlinkat
#pragma redefine_extname usleep fuzz_usleep
#pragma redefine_extname write fuzz_write

#endif
