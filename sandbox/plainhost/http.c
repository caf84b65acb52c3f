/* xnbase.dll: HTTP and posted tasks. No network: the update platform's answers are here. The host
 * delivers answers and tasks on its own thread, between two ticks. */
#include <string.h>

#include "hostinterface.h"
#include "plain.h"

struct PlainWatch* plainWatch(void);

#define SERVER "http://platform.invalid"

/* JSON as it stands, with the values of macros. */
#define TEXT(...) #__VA_ARGS__
#define JSON(...) TEXT(__VA_ARGS__)

/* The formatter takes JSON for code. */
/* clang-format off */
static const struct Exchange {
    const char* url;
    const char* asked; /* a part of the question */
    const char* answer;
} conversation[QUESTIONS] = {
    {SERVER "/PacketV2/GetUpgradePacket", "\"asset_id\":{\"id\":2002,\"oid\":1001}",
     JSON({"target": {"channel_id": {"product_id": "p", "id": "c"}, "ver": NEW_VERSION}})},
    {SERVER "/PacketV2/GetFullPacketDiff",
     "\"start_ver\":\"" OLD_VERSION "\",\"target_ver\":\"" NEW_VERSION "\"",
     JSON({"full_packet_diff": {"target_version": NEW_VERSION,
           "modules": [{"module_id": {"id": "/orvviruslib"}, "target_version": LIBRARY_VERSION}],
           "materials": [{"material_id": {"module_id": {"id": "/orvviruslib"}, "id": "m"},
                          "target_version": NEW_VERSION}]}})},
    {SERVER "/PacketV2/GetPacketMeta", "\"product_id\":\"p\"",
     JSON({"meta": {"change_log": "plain"}})},
    {SERVER "/FileV2/GetFileStorageAddr", "", JSON({"normal_file_addr": STORAGE})},
    {SERVER "/MaterialV2/BatchGetMaterialMeta", "\"id\":\"/orvviruslib\"",
     JSON({"metas": [{"meta": {"file_id": MATERIAL_ID, "md5": MATERIAL_MD5,
           "extends": {"file_path": "data/plain.dat", "file_md5": MATERIAL_MD5, "non_cab": "1",
                       "osver": "10.0.19045",
                       "exec": "(%process%=\"helper.exe\" %param%=\"--go\")"}}}]})},
};
/* clang-format on */

static const char* upgradeAddress(IXEnvConfig* self) {
    return "http://upgrade.invalid"; /* where nobody answers */
}

static const char* serverAddress(IXEnvConfig* self) {
    return SERVER;
}

IXEnvConfig* envConfigInstance(void) {
    static const struct IXEnvConfigTable table = {.upgradeAddress = upgradeAddress,
                                                  .serverAddress = serverAddress};
    static IXEnvConfig config = {&table};
    return &config;
}

struct Header {
    IXHttpHeader object;
    bool isJson;
};

static void addHeader(IXHttpHeader* self, const char* name, const char* value) {
    if (strcmp(name, "Content-Type") == 0) {
        ((struct Header*)self)->isJson = strcmp(value, "application/json") == 0;
    }
}

IXHttpHeader* newRequestHeader(void) {
    static const struct IXHttpHeaderTable table = {.add = addHeader};
    struct Header* const header = calloc(1, sizeof *header);
    require(header != NULL, "memory");
    header->object.table = &table;
    return &header->object;
}

struct Request {
    struct Header* header;
    char body[]; /* with a zero */
};

void* newRequest(IXHttpHeader* header, const char* body, size_t length) {
    struct Request* const request = calloc(1, sizeof *request + length + 1);
    require(request != NULL, "memory");
    request->header = (struct Header*)header;
    memcpy(request->body, body, length);
    return request;
}

/* What waits for its delivery; without an object the place is free. */
static struct Waiting {
    const CountedTable** object; /* a callback or a task */
    bool isTask;
    const char* answer; /* null: a transport error */
} places[4];
static int asked; /* questions of the conversation */
static atomic_flag placesLock = ATOMIC_FLAG_INIT;

static void append(void* object, bool isTask, const char* answer) {
    struct Waiting* place = places;
    while (place->object) {
        require(++place < places + 4, "room for what waits");
    }
    *place = (struct Waiting){object, isTask, answer};
    (*place->object)->addRef(object);
}

static const char* answerTo(const char* url, const char* body) {
    if (asked == QUESTIONS || strcmp(url, conversation[asked].url) != 0) {
        return NULL;
    }
    require(strstr(body, conversation[asked].asked) != NULL, body);
    return conversation[asked++].answer;
}

void asyncHttp(int method, const char* url, void* request, Callback* callback) {
    struct Request* const question = request;
    require(method == 2 && question->header->isJson, "the question is a POST of JSON");
    lock(&placesLock);
    append(callback, false, answerTo(url, question->body));
    unlock(&placesLock);
    free(question->header);
    free(question);
}

void postTask(int kind, Task* task) {
    require(kind == 0, "the kind of a task");
    lock(&placesLock);
    append(task, true, NULL);
    unlock(&placesLock);
}

/* Takes one that is ready. Until the call that brought it has returned the plug-in holds it too. */
static struct Waiting take(void) {
    struct Waiting taken = {NULL, false, NULL};
    lock(&placesLock);
    for (struct Waiting* place = places; place < places + 4 && !taken.object; ++place) {
        if (place->object) {
            const long held = (*place->object)->addRef(place->object);
            const long left = (*place->object)->release(place->object);
            require(left == held - 1, "release gives the new count");
            if (left == 1) {
                taken = *place;
                place->object = NULL;
            }
        }
    }
    unlock(&placesLock);
    return taken;
}

struct Answer {
    Response object;
    const char* text;
};

static int errorOf(Response* self) {
    const int notResolved = 6; /* libcurl's */
    return ((struct Answer*)self)->text ? 0 : notResolved;
}

static int statusOf(Response* self) {
    return ((struct Answer*)self)->text ? 200 : 0;
}

static const char* bodyOf(Response* self) {
    return ((struct Answer*)self)->text;
}

static size_t sizeOf(Response* self) {
    return bodyOf(self) ? strlen(bodyOf(self)) : 0;
}

static void deliverAnswer(Callback* callback, const char* text) {
    static const struct ResponseTable table = {
        .error = errorOf, .status = statusOf, .body = bodyOf, .size = sizeOf};
    struct Answer answer = {{&table}, text};
    callback->table->onResponse(callback, &answer.object); /* the next question comes within */
    plainWatch()->answers += text ? 1 : 0;
}

bool plainDeliver(void) {
    const struct Waiting taken = take();
    if (!taken.object) {
        return false;
    }
    if (taken.isTask) {
        Task* const task = (Task*)taken.object;
        task->table->run(task);
    } else {
        deliverAnswer((Callback*)taken.object, taken.answer);
    }
    require((*taken.object)->release(taken.object) == 0, "the last reference frees the object");
    return true;
}
