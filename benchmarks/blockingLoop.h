#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/* Sends a request and waits for the prompt, `count` times, with blocking calls and nothing else. The requests
   take turns. Returns 0, or -1 when the port can't be used. The path is that of a device, or
   "tcp:127.0.0.1:PORT". */
int blockingLoop(const char* path, const char* const* requests, int requestCount, int count);

#ifdef __cplusplus
}
#endif
