#include "trace/element_pipeline.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace {

// Bodies are gathered until a batch holds this much text: large enough that
// passing a batch between threads costs nothing worth counting, small
// enough that the batches in flight stay within a few MiB.
constexpr std::size_t kBatchBytes = 128 * 1024;

// A batch's buffers are given back when one very large element has grown
// them beyond this.
constexpr std::size_t kLargestKeptBuffer = 4 * kBatchBytes;

enum class BatchState {
    Filling,   // owned by the converting thread
    Filled,    // waiting to be read
    Reading,
    Read,      // waiting for its turn to be handed on
    HandingOn,
};

struct Batch {
    BatchState state = BatchState::Filling;
    std::string text;                  // the bodies, one after another
    std::vector<std::size_t> bodyEnds; // into text
    std::vector<Element> elements;     // once read; views into text and args
    JsonBuilder args;                  // the elements' "args", one after another
    std::vector<std::size_t> argsEnds; // into args
};

void releaseIfLarge(std::string& buffer)
{
    if (buffer.capacity() > kLargestKeptBuffer) std::string().swap(buffer);
    buffer.clear();
}

} // namespace

struct ElementPipeline {
    ElementHandler onElement = nullptr;
    void* context = nullptr;

    // Without helpers: each body is read here and handed on at once.
    Element element;
    JsonBuilder builder;

    // With helpers. A ring of batches, filled in turn: batches numbered
    // from handedOn up to filled are in flight, the one at `filled` is being
    // filled. The counters and states change under the lock only.
    std::vector<Batch> batches;
    std::uint64_t filled = 0;
    std::uint64_t handedOn = 0;
    bool handingOn = false; // one thread at a time hands on, in order
    bool stopping = false;
    std::mutex lock;
    std::condition_variable changed;
    std::vector<std::thread> helpers;

    Batch& batch(std::uint64_t number) { return batches[number % batches.size()]; }
};

namespace {

void readBatch(Batch& batch)
{
    std::size_t count = batch.bodyEnds.size();
    batch.elements.resize(count);
    batch.argsEnds.resize(count);
    batch.args.clear();
    std::string_view text = batch.text;
    std::size_t from = 0;
    for (std::size_t i = 0; i < count; ++i) {
        parseElement(text.substr(from, batch.bodyEnds[i] - from), batch.elements[i], batch.args);
        batch.argsEnds[i] = batch.args.allText().size();
        from = batch.bodyEnds[i];
    }
    // The args are in place once all are written.
    std::string_view args = batch.args.allText();
    for (std::size_t i = 0, start = 0; i < count; start = batch.argsEnds[i++])
        batch.elements[i].args = args.substr(start, batch.argsEnds[i] - start);
}

void handOn(ElementPipeline& pipeline, Batch& batch)
{
    for (const Element& element : batch.elements) pipeline.onElement(pipeline.context, element);
    releaseIfLarge(batch.text);
    if (batch.args.allText().size() > kLargestKeptBuffer) batch.args = JsonBuilder();
    batch.bodyEnds.clear();
}

// Does one piece of work that is ready, with the lock held on entry and on
// return (it is let go while the work is done): hands on the next batch in
// order when it is read, else reads the oldest batch waiting. False when
// nothing is ready.
bool runOneTask(ElementPipeline& pipeline, std::unique_lock<std::mutex>& held)
{
    Batch& next = pipeline.batch(pipeline.handedOn);
    if (!pipeline.handingOn && pipeline.handedOn < pipeline.filled && next.state == BatchState::Read) {
        pipeline.handingOn = true;
        next.state = BatchState::HandingOn;
        held.unlock();
        handOn(pipeline, next);
        held.lock();
        next.state = BatchState::Filling;
        ++pipeline.handedOn;
        pipeline.handingOn = false;
        pipeline.changed.notify_all();
        return true;
    }
    for (std::uint64_t number = pipeline.handedOn; number < pipeline.filled; ++number) {
        Batch& waiting = pipeline.batch(number);
        if (waiting.state != BatchState::Filled) continue;
        waiting.state = BatchState::Reading;
        held.unlock();
        readBatch(waiting);
        held.lock();
        waiting.state = BatchState::Read;
        pipeline.changed.notify_all();
        return true;
    }
    return false;
}

void runHelper(ElementPipeline& pipeline)
{
    std::unique_lock<std::mutex> held(pipeline.lock);
    while (!pipeline.stopping)
        if (!runOneTask(pipeline, held)) pipeline.changed.wait(held);
}

// Passes the batch being filled on to be read, then makes sure the next
// one is free to fill, working on batches in flight while none is.
void submitBatch(ElementPipeline& pipeline)
{
    std::unique_lock<std::mutex> held(pipeline.lock);
    pipeline.batch(pipeline.filled).state = BatchState::Filled;
    ++pipeline.filled;
    pipeline.changed.notify_all();
    while (pipeline.filled - pipeline.handedOn >= pipeline.batches.size())
        if (!runOneTask(pipeline, held)) pipeline.changed.wait(held);
}

} // namespace

void ElementPipelineEnd::operator()(ElementPipeline* pipeline) const
{
    {
        std::lock_guard<std::mutex> held(pipeline->lock);
        pipeline->stopping = true;
    }
    pipeline->changed.notify_all();
    for (std::thread& helper : pipeline->helpers) helper.join();
    delete pipeline;
}

ElementPipelinePtr startElementPipeline(unsigned helpers, ElementHandler onElement, void* context)
{
    ElementPipelinePtr pipeline(new ElementPipeline);
    pipeline->onElement = onElement;
    pipeline->context = context;
    if (helpers == 0) return pipeline;
    // Two batches per thread keep every thread busy while the next is filled.
    pipeline->batches.resize(2 * (helpers + 1) + 1);
    // A helper that cannot be started leaves its work to the others, or to
    // the converting thread, which reads and exports batches whenever none
    // is free to fill.
    try {
        for (unsigned i = 0; i < helpers; ++i) pipeline->helpers.emplace_back(runHelper, std::ref(*pipeline));
    } catch (const std::system_error&) {
    }
    return pipeline;
}

void addElementBody(ElementPipeline& pipeline, std::string_view body)
{
    if (pipeline.batches.empty()) {
        pipeline.builder.clear();
        parseElement(body, pipeline.element, pipeline.builder);
        pipeline.onElement(pipeline.context, pipeline.element);
        return;
    }
    Batch& batch = pipeline.batch(pipeline.filled); // only this thread changes `filled`
    batch.text.append(body);
    batch.bodyEnds.push_back(batch.text.size());
    if (batch.text.size() >= kBatchBytes) submitBatch(pipeline);
}

void drainElementPipeline(ElementPipeline& pipeline)
{
    if (pipeline.batches.empty()) return;
    if (!pipeline.batch(pipeline.filled).bodyEnds.empty()) submitBatch(pipeline);
    std::unique_lock<std::mutex> held(pipeline.lock);
    while (pipeline.handedOn < pipeline.filled)
        if (!runOneTask(pipeline, held)) pipeline.changed.wait(held);
}

unsigned elementHelpersForThisMachine()
{
    unsigned processors = std::thread::hardware_concurrency();
    return processors <= 1 ? 0 : processors - 1 < 3 ? processors - 1 : 3;
}
