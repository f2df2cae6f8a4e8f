#pragma once

#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A run in which each pass brought one value of each event. */
struct PlainRun {
    int events;
    int passes;
    const int* conversions; /* by event */
    const int* times;       /* by pass */
    const int* values;      /* pass by pass, of each the events */
};

/* Print the samples of a run, without the lines before them: event by event as a data log has them, and as a
   table. Return 0, or -1 when the file can't be written. */
int printLog(FILE* file, const struct PlainRun* run);
int printTable(FILE* file, const struct PlainRun* run);

#ifdef __cplusplus
}
#endif
