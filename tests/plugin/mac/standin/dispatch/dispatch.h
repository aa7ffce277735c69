// As much of Grand Central Dispatch as the plug-in uses. Queues are for the test to define.
#pragma once

#include <cstdint>

#define DISPATCH_QUEUE_PRIORITY_DEFAULT 0
#define DISPATCH_TIME_NOW 0

using dispatch_queue_t = struct dispatch_queue_s*;
using dispatch_semaphore_t = struct dispatch_semaphore_s*;
using dispatch_time_t = std::uint64_t;

dispatch_queue_t dispatch_get_global_queue(long priority, unsigned long flags);
void dispatch_async_f(dispatch_queue_t queue, void* context, void (*work)(void*));

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t nanoseconds);
dispatch_semaphore_t dispatch_semaphore_create(long value);
long dispatch_semaphore_signal(dispatch_semaphore_t semaphore);
long dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout);
void dispatch_release(dispatch_semaphore_t object);
