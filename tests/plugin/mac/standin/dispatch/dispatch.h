// As much of Grand Central Dispatch as background work takes.
#pragma once

#define DISPATCH_QUEUE_PRIORITY_DEFAULT 0

using dispatch_queue_t = struct dispatch_queue_s*;

dispatch_queue_t dispatch_get_global_queue(long priority, unsigned long flags);
void dispatch_async_f(dispatch_queue_t queue, void* context, void (*work)(void*));
