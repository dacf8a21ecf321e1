/* The player's visual plug-in interface, shared by the player
 * (stagebeacon-player) and the plug-ins it loads (libstagebeacon.so).
 *
 * A plug-in is a shared library exporting one entry point,
 * iTunesPluginMainMachO. The player calls it with kPlayerInitMessage; the
 * plug-in registers its visual handler through the player's callback
 * (PlayerRegisterVisualPlugin below), and from then on the player sends every
 * event to that handler: start, window shown or hidden, idle ticks, track
 * changes, key events. Mouse events go to the mouse monitor the handler
 * installs while its window is shown.
 *
 * Messages and options are four-character codes, as the player has always
 * used them. Strings in track records are length-prefixed (first byte the
 * length, at most 255 characters, no terminating NUL).
 *
 * The port is an image the player owns: a cairo ARGB32 image surface. The
 * plug-in paints finished frames into it and then calls frameReady, from
 * whichever thread drew the frame; the player shows the port (windowed) or
 * saves it (headless snapshots).
 *
 * Threads: the player sends every message, and every mouse event, from its
 * main thread. frameReady may come from any thread.
 */
#ifndef STAGEBEACON_PLAYER_API_H
#define STAGEBEACON_PLAYER_API_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define PLAYER_FOURCC(a, b, c, d)                                                                  \
    (((uint32_t)(uint8_t)(a) << 24) | ((uint32_t)(uint8_t)(b) << 16) |                             \
     ((uint32_t)(uint8_t)(c) << 8) | (uint32_t)(uint8_t)(d))

typedef int32_t PlayerStatus;

/* Results. */
enum {
    kPlayerNoErr = 0,
    kPlayerUnimplementedMessage = -4,
    kPlayerMemoryFull = -108,
    kPlayerEventNotHandled = -9874
};

/* Messages to the entry point. */
#define kPlayerInitMessage PLAYER_FOURCC('i', 'n', 'i', 't')
#define kPlayerCleanupMessage PLAYER_FOURCC('c', 'l', 'r', ' ')

/* Messages to the visual handler. */
#define kVisualPluginInitMessage PLAYER_FOURCC('i', 'n', 'i', 't')
#define kVisualPluginCleanupMessage PLAYER_FOURCC('c', 'l', 'r', ' ')
#define kVisualPluginConfigureMessage PLAYER_FOURCC('c', 'n', 'f', 'g')
#define kVisualPluginShowWindowMessage PLAYER_FOURCC('s', 'h', 'o', 'w')
#define kVisualPluginHideWindowMessage PLAYER_FOURCC('h', 'i', 'd', 'e')
#define kVisualPluginSetWindowMessage PLAYER_FOURCC('s', 'w', 'i', 'n')
#define kVisualPluginChangeTrackMessage PLAYER_FOURCC('c', 't', 'r', 'k')
#define kVisualPluginPlayMessage PLAYER_FOURCC('v', 'p', 'l', 'y')
#define kVisualPluginPauseMessage PLAYER_FOURCC('v', 'p', 'a', 'u')
#define kVisualPluginUnpauseMessage PLAYER_FOURCC('v', 'u', 'n', 'p')
#define kVisualPluginRenderMessage PLAYER_FOURCC('v', 'r', 'n', 'd')
#define kVisualPluginIdleMessage PLAYER_FOURCC('n', 'u', 'l', 'l')
#define kVisualPluginUpdateMessage PLAYER_FOURCC('v', 'u', 'p', 'd')
#define kVisualPluginSetPositionMessage PLAYER_FOURCC('s', 'e', 't', 'p')
#define kVisualPluginEnableMessage PLAYER_FOURCC('v', 'o', 'n', ' ')
#define kVisualPluginDisableMessage PLAYER_FOURCC('v', 'o', 'f', 'f')
#define kVisualPluginStopMessage PLAYER_FOURCC('v', 's', 't', 'p')
#define kVisualPluginEventMessage PLAYER_FOURCC('v', 'e', 'v', 't')

/* Calls from the plug-in to the player (the player's callback). */
#define kPlayerRegisterVisualPluginMessage PLAYER_FOURCC('r', 'v', 'i', 's')
#define kPlayerGetPluginFileSpecMessage PLAYER_FOURCC('p', 'f', 's', 'p')
#define kPlayerInstallMouseMonitorMessage PLAYER_FOURCC('i', 'm', 'o', 'n')
#define kPlayerRemoveMouseMonitorMessage PLAYER_FOURCC('r', 'm', 'o', 'n')

/* Registration options. */
enum {
    kVisualWantsIdleMessages = 8,
    kVisualWantsConfigure = 32
};

/* Version stages (SetNumVersion's stage byte). */
enum {
    kPlayerVersionDevelopment = 0x20,
    kPlayerVersionAlpha = 0x40,
    kPlayerVersionBeta = 0x60,
    kPlayerVersionFinal = 0x80
};

typedef struct PlayerNumVersion {
    uint8_t majorRev;
    uint8_t minorAndBugRev; /* minor in the high nibble, bug fix in the low one */
    uint8_t stage;
    uint8_t nonRelRev;
} PlayerNumVersion;

typedef uint8_t PlayerStr255[256]; /* length-prefixed */
typedef uint8_t PlayerStr63[64];   /* length-prefixed */

/* A rectangle in port coordinates: origin top left, y downwards. */
typedef struct PlayerRect {
    int16_t top;
    int16_t left;
    int16_t bottom;
    int16_t right;
} PlayerRect;

typedef struct PlayerPoint {
    int16_t v;
    int16_t h;
} PlayerPoint;

typedef struct _cairo_surface cairo_surface_t;

typedef struct PlayerPort {
    cairo_surface_t* surface; /* ARGB32 image surface, owned by the player */
    /* Called after each finished frame was painted into surface, from the
     * drawing thread, while the plug-in keeps other threads out of the
     * port. May be null. */
    void (*frameReady)(struct PlayerPort* port);
    void* hostData;
} PlayerPort;

typedef struct PlayerTrackInfo {
    uint32_t recordLength; /* sizeof(PlayerTrackInfo) */
    PlayerStr255 name;
    PlayerStr255 artist;
    PlayerStr255 album;
    PlayerStr255 genre;
    uint32_t trackNumber;
    uint32_t totalTimeInMS;
} PlayerTrackInfo;

typedef struct PlayerStreamInfo {
    uint32_t recordLength; /* sizeof(PlayerStreamInfo) */
    PlayerStr255 streamTitle;
    PlayerStr255 streamURL;
    PlayerStr255 streamMessage;
} PlayerStreamInfo;

typedef struct PlayerRenderData {
    uint8_t numWaveformChannels;
    uint8_t waveformData[2][512];
    uint8_t numSpectrumChannels;
    uint8_t spectrumData[2][512];
} PlayerRenderData;

/* Classic event records of the event message. */
enum {
    kPlayerMouseDownEvent = 1,
    kPlayerMouseUpEvent = 2,
    kPlayerKeyDownEvent = 3,
    kPlayerKeyUpEvent = 4,
    kPlayerAutoKeyEvent = 5
};

typedef struct PlayerEventRecord {
    uint16_t what;
    uint32_t message; /* key events: the character code in the low byte */
    uint32_t when;
    PlayerPoint where; /* port coordinates */
    uint16_t modifiers;
} PlayerEventRecord;

/* Mouse monitor events. */
#define kPlayerEventClassMouse PLAYER_FOURCC('m', 'o', 'u', 's')
#define kPlayerEventClassKeyboard PLAYER_FOURCC('k', 'e', 'y', 'b')
enum {
    kPlayerMouseDown = 1,
    kPlayerMouseUp = 2,
    kPlayerMouseMoved = 5,
    kPlayerMouseDragged = 6,
    kPlayerMouseWheelMoved = 10
};
enum { kPlayerControlKeyModifier = 0x1000 };
enum { kPlayerPrimaryButton = 1, kPlayerSecondaryButton = 2 };

typedef struct PlayerMouseEvent {
    uint32_t eventClass;
    uint32_t kind;
    PlayerPoint where; /* port coordinates */
    uint32_t modifiers;
    uint16_t button;
    int32_t wheelDelta; /* positive: away from the user */
} PlayerMouseEvent;

typedef struct PlayerEventTypeSpec {
    uint32_t eventClass;
    uint32_t eventKind;
} PlayerEventTypeSpec;

typedef PlayerStatus (*PlayerMouseMonitorProc)(void* handlerCall, const PlayerMouseEvent* event,
                                               void* data);

/* Services the player offers besides messages. A headless player routes the
 * plug-in's alerts, file dialogs, opened pages and notifications to its
 * script and log through these; a windowed player sets headless to 0 and
 * the plug-in shows them itself. */
typedef struct PlayerHostServices {
    uint32_t recordLength; /* sizeof(PlayerHostServices) */
    int32_t headless;
    void* hostData;
    /* One line for the player's log. */
    void (*log)(void* hostData, const char* line);
    /* The scripted answer for the next alert: -1 none scripted, 0 the
     * default button, 1 the cancel button. */
    int32_t (*takeAlertAnswer)(void* hostData);
    /* The scripted answer for the next file dialog: -1 none scripted,
     * 0 cancel, 1 chosen (path filled, NUL-terminated). */
    int32_t (*takeFileChoice)(void* hostData, char* path, size_t size);
} PlayerHostServices;

struct PlayerMessageInfo;
typedef PlayerStatus (*PlayerProc)(void* appCookie, uint32_t message,
                                   struct PlayerMessageInfo* messageInfo);

struct VisualPluginMessageInfo;
typedef PlayerStatus (*VisualPluginProc)(uint32_t message,
                                         struct VisualPluginMessageInfo* messageInfo,
                                         void* refCon);

/* What a visual plug-in registers. */
typedef struct PlayerRegisterVisualPluginInfo {
    PlayerStr63 name;
    uint32_t options;
    uint32_t creator;
    PlayerNumVersion pluginVersion;
    VisualPluginProc handler;
    void* registerRefCon;
    uint32_t timeBetweenDataInMS;
    uint32_t numWaveformChannels;
    uint32_t numSpectrumChannels;
    int16_t minWidth;
    int16_t minHeight;
    int16_t maxWidth;
    int16_t maxHeight;
    uint16_t minFullScreenBitDepth;
    uint16_t maxFullScreenBitDepth;
    uint16_t windowAlignmentInBytes;
} PlayerRegisterVisualPluginInfo;

typedef struct PlayerMessageInfo {
    union {
        PlayerRegisterVisualPluginInfo registerVisualPlugin;
        struct {
            char path[1024]; /* out: the plug-in library's path */
        } getPluginFileSpec;
        struct {
            PlayerMouseMonitorProc handler;
            const PlayerEventTypeSpec* types;
            uint32_t numTypes;
            void* userData;
            void* monitorRef; /* out: for removal */
        } installMouseMonitor;
        struct {
            void* monitorRef;
        } removeMouseMonitor;
    } u;
} PlayerMessageInfo;

/* The entry point's init message. */
typedef struct PluginInitMessage {
    uint32_t majorVersion;
    uint32_t minorVersion;
    PlayerNumVersion appVersion;
    void* appCookie;
    PlayerProc appProc;
    const PlayerHostServices* services; /* may be null */
    /* Out, optional, for a headless player's script. Filled by the plug-in
     * at init; left null by plug-ins without them. Called on the main
     * thread. */
    /* 1 while the plug-in has work running on other threads, else 0. */
    int32_t (*backgroundWorkRunning)(void);
    /* A script command the player does not know itself (verb and the rest
     * of the line): 0 done, -1 unknown verb, -2 failed with a reason in
     * error (NUL-terminated). */
    int32_t (*scriptCommand)(const char* verb, const char* arguments, char* error,
                             size_t errorSize);
} PluginInitMessage;

typedef struct PluginMessageInfo {
    union {
        PluginInitMessage initMessage;
    } u;
} PluginMessageInfo;

typedef struct VisualPluginMessageInfo {
    union {
        struct {
            uint32_t messageMajorVersion;
            uint32_t messageMinorVersion;
            PlayerNumVersion appVersion;
            void* appCookie;
            PlayerProc appProc;
            uint32_t options;
            void* refCon; /* out: handed back with every later message */
        } initMessage;
        struct {
            PlayerPort* port;
            PlayerRect drawRect;
            uint32_t options;
        } showWindowMessage;
        struct {
            PlayerPort* port;
            PlayerRect drawRect;
            uint32_t options;
        } setWindowMessage;
        struct {
            PlayerTrackInfo* trackInfo; /* may be null */
            PlayerStreamInfo* streamInfo; /* may be null */
        } changeTrackMessage;
        struct {
            PlayerTrackInfo* trackInfo;
            PlayerStreamInfo* streamInfo;
            int32_t volume;
        } playMessage;
        struct {
            const PlayerRenderData* renderData;
            uint32_t timeStampID;
        } renderMessage;
        struct {
            const PlayerEventRecord* event;
        } eventMessage;
    } u;
} VisualPluginMessageInfo;

/* The one symbol a plug-in exports. */
typedef PlayerStatus (*PlayerPluginMainProc)(uint32_t message, PluginMessageInfo* messageInfo,
                                            void* refCon);
#define kPlayerPluginEntryPointName "iTunesPluginMainMachO"

#ifdef __cplusplus
}
#endif

#endif
