#pragma once

namespace tavo {

struct Batch;

// What the statement that this thread is in has sent so far; null outside of statements, and where nothing is shown.
Batch* currentBatch() noexcept;

// Sends what the statement has so far, without waiting for its end.
void sendCurrentBatch();

} // namespace tavo
