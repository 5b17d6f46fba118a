/*
 * probekit: builds the tree of USB host controllers, hubs, ports and devices.
 *
 * The library is loaded at run time by the program and reached through three
 * C functions. The tree it returns is read-only for the caller and freed with
 * DestroyRootItem. Every record below has a fixed layout (checked with static
 * asserts) because the program reads it by offset; the connection, hub and
 * descriptor blocks mirror the Windows USB hub I/O control structures
 * byte for byte so one viewer reads the trees of both platforms.
 *
 * Tree shape:
 *   root -> controllers (kind 0) -> root hubs (kind 1) -> one node per port:
 *   external hub (kind 2, with its own ports below) or device (kind 3).
 *   An empty port is a device node whose connection status is 0
 *   (NoDeviceConnected); viewers do not list it.
 *
 * Texts are NUL-terminated UTF-16 (UsbWChar) on every platform.
 */
#ifndef PROBEKIT_H
#define PROBEKIT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(_WIN32)
#  if defined(PROBEKIT_BUILDING)
#    define PROBEKIT_API __declspec(dllexport)
#  else
#    define PROBEKIT_API __declspec(dllimport)
#  endif
#else
#  define PROBEKIT_API __attribute__((visibility("default")))
#endif

typedef uint16_t UsbWChar;

/* Node kinds: the first 32-bit word of every information record. */
enum UsbNodeKind {
    UsbNodeController = 0,
    UsbNodeRootHub = 1,
    UsbNodeExternalHub = 2,
    UsbNodeDevice = 3
};

/* Connection status of a port (Windows USB_CONNECTION_STATUS values). */
enum UsbConnectionStatus {
    UsbNoDeviceConnected = 0,
    UsbDeviceConnected = 1,
    UsbDeviceFailedEnumeration = 2,
    UsbDeviceGeneralFailure = 3,
    UsbDeviceCausedOvercurrent = 4,
    UsbDeviceNotEnoughPower = 5,
    UsbDeviceNotEnoughBandwidth = 6,
    UsbDeviceHubNestedTooDeeply = 7,
    UsbDeviceInLegacyHub = 8,
    UsbDeviceEnumerating = 9,
    UsbDeviceReset = 10
};

/* Device speed codes (Windows USB_DEVICE_SPEED values, and a code for a
 * speed the platform did not tell). */
enum UsbDeviceSpeed {
    UsbSpeedLow = 0,
    UsbSpeedFull = 1,
    UsbSpeedHigh = 2,
    UsbSpeedSuper = 3,
    UsbSpeedUnknown = 0xFF
};

struct UsbTreeItem;

/* One cell of a child list: item at offset 0, next cell at offset 8. */
typedef struct UsbListNode {
    struct UsbTreeItem *pItem;
    struct UsbListNode *pNext;
} UsbListNode;

/* A node of the tree: name at 0, information record at 16, children at 24. */
typedef struct UsbTreeItem {
    const UsbWChar *pName;
    struct UsbTreeItem *pParent;
    void *pInfo; /* points at a record whose first int32 is a UsbNodeKind */
    UsbListNode *pChildren;
} UsbTreeItem;

/* The root: same head as a tree item (no name, no information), children
 * (the controllers) at offset 24; the rest is the library's own. */
typedef struct UsbRootItem UsbRootItem;
struct UsbRootItem {
    const UsbWChar *pName;
    struct UsbTreeItem *pParent;
    void *pInfo;
    UsbListNode *pChildren;
    void *pArena; /* library-private allocation state */
};

#pragma pack(push, 1)

/* USB 2.0 device descriptor (chapter 9), 18 bytes. */
typedef struct UsbDeviceDescriptor {
    uint8_t bLength;
    uint8_t bDescriptorType;
    uint16_t bcdUSB;
    uint8_t bDeviceClass;
    uint8_t bDeviceSubClass;
    uint8_t bDeviceProtocol;
    uint8_t bMaxPacketSize0;
    uint16_t idVendor;
    uint16_t idProduct;
    uint16_t bcdDevice;
    uint8_t iManufacturer;
    uint8_t iProduct;
    uint8_t iSerialNumber;
    uint8_t bNumConfigurations;
} UsbDeviceDescriptor;

/* USB 2.0 endpoint descriptor, 7 bytes. */
typedef struct UsbEndpointDescriptor {
    uint8_t bLength;
    uint8_t bDescriptorType;
    uint8_t bEndpointAddress;
    uint8_t bmAttributes;
    uint16_t wMaxPacketSize;
    uint8_t bInterval;
} UsbEndpointDescriptor;

/* An open pipe: its endpoint and schedule offset (USB_PIPE_INFO), 11 bytes. */
typedef struct UsbPipeInfo {
    UsbEndpointDescriptor EndpointDescriptor;
    uint32_t ScheduleOffset;
} UsbPipeInfo;

/* Port connection information (USB_NODE_CONNECTION_INFORMATION_EX).
 * PipeList holds NumberOfOpenPipes entries (at least one is allocated). */
typedef struct UsbPortConnectionInfo {
    uint32_t ConnectionIndex;               /* 0: port number, 1-based */
    UsbDeviceDescriptor DeviceDescriptor;   /* 4 */
    uint8_t CurrentConfigurationValue;      /* 22 */
    uint8_t Speed;                          /* 23: UsbDeviceSpeed */
    uint8_t DeviceIsHub;                    /* 24 */
    uint16_t DeviceAddress;                 /* 25 */
    uint32_t NumberOfOpenPipes;             /* 27 */
    uint32_t ConnectionStatus;              /* 31: UsbConnectionStatus */
    UsbPipeInfo PipeList[1];                /* 35 */
} UsbPortConnectionInfo;

/* USB 2.0 hub descriptor (USB_HUB_DESCRIPTOR), 71 bytes. */
typedef struct UsbHubDescriptor {
    uint8_t bDescriptorLength;
    uint8_t bDescriptorType;
    uint8_t bNumberOfPorts;
    uint16_t wHubCharacteristics;
    uint8_t bPowerOnToPowerGood;
    uint8_t bHubControlCurrent;
    uint8_t bRemoveAndPowerMask[64];
} UsbHubDescriptor;

/* Hub information block (USB_NODE_INFORMATION for a hub): node type, the
 * hub descriptor, then the bus-powered flag; 76 bytes. */
typedef struct UsbHubInformationBlock {
    uint32_t NodeType; /* 0: hub */
    UsbHubDescriptor HubDescriptor;
    uint8_t HubIsBusPowered;
} UsbHubInformationBlock;

/* Configuration descriptor request (USB_DESCRIPTOR_REQUEST): a 12-byte
 * header (connection index, setup packet), then the descriptor bytes.
 * SetupPacket.wLength is the number of descriptor bytes that follow. */
typedef struct UsbDescriptorRequest {
    uint32_t ConnectionIndex;
    struct {
        uint8_t bmRequest;
        uint8_t bRequest;
        uint16_t wValue;
        uint16_t wIndex;
        uint16_t wLength;
    } SetupPacket;
    uint8_t Data[1];
} UsbDescriptorRequest;

#pragma pack(pop)

/* Extended hub capability flags (USB_HUB_CAPABILITIES_EX): bit 0 high speed
 * capable, 1 high speed, 2 multi-TT capable, 3 multi-TT on, 4 root hub,
 * 5 armed for wake on connect. */
typedef struct UsbHubCapabilitiesEx {
    uint32_t CapabilityFlags;
} UsbHubCapabilitiesEx;

/* Plain hub capabilities (USB_HUB_CAPABILITIES): bit 0 hub is 2.x capable. */
typedef struct UsbHubCapabilities {
    uint32_t CapabilityFlags;
} UsbHubCapabilities;

/* One string descriptor of a device: index, language and the standard
 * string descriptor bytes (bLength, bDescriptorType 3, UTF-16LE text).
 * LanguageId is the LANGID the string was read in: the first language of
 * the device's string descriptor 0; 0 when it could not be learnt (Linux
 * without access to the device node: the kernel reads the strings in that
 * same first language but does not say which one it is). */
typedef struct UsbStringDescriptorNode {
    struct UsbStringDescriptorNode *pNext;
    uint32_t DescriptorIndex;
    uint32_t LanguageId;
    uint32_t Length; /* bytes at pDescriptor */
    const uint8_t *pDescriptor;
} UsbStringDescriptorNode;

/* Which hub descriptor fields the library could read (uHubFieldsKnown).
 * Where the platform cannot read the hub descriptor (Linux without root),
 * only some are known; viewers show the others as unavailable. */
enum UsbHubField {
    UsbHubFieldPorts = 0x01,          /* bNumberOfPorts */
    UsbHubFieldBusPowered = 0x02,     /* HubIsBusPowered */
    UsbHubFieldCharacteristics = 0x04 /* wHubCharacteristics and the rest */
};
#define USB_HUB_FIELDS_ALL 0x07u

/* Link facts of a port with something connected, and of a root hub's bus
 * (all platforms). Appended to the hub and device records; null when the
 * library could not tell. */
enum UsbLinkFlag {
    /* The bits of USB_NODE_CONNECTION_INFORMATION_EX_V2_FLAGS. */
    UsbLinkOperatingAtSuperSpeed = 0x01,
    UsbLinkSuperSpeedCapable = 0x02,
    UsbLinkOperatingAtSuperSpeedPlus = 0x04,
    UsbLinkSuperSpeedPlusCapable = 0x08
};
enum UsbLinkProtocol {
    /* The bits of USB_PROTOCOLS: what the port supports. */
    UsbLinkProtocolUsb110 = 0x01,
    UsbLinkProtocolUsb200 = 0x02,
    UsbLinkProtocolUsb300 = 0x04
};
typedef struct UsbPortLinkInfo {
    /* 0: where the device sits: "<bus>-<port>[.<port>...]" as Linux names
     * it ("3-1.2"); a root hub's is its bus number ("3"). Windows numbers
     * the controllers from 1 in the order it finds them as the bus. */
    const UsbWChar *pPortPath;
    uint32_t SpeedKbps;          /* 8: negotiated speed in kbit/s (1500, 12000, 480000,
                                    5000000, 10000000, 20000000); 0: unknown */
    uint32_t SupportedProtocols; /* 12: UsbLinkProtocol bits of the port; 0: unknown */
    uint32_t Flags;              /* 16: UsbLinkFlag bits */
    uint32_t FlagsKnown;         /* 20: which UsbLinkFlag bits the platform told */
} UsbPortLinkInfo;

/* Kind 0: host controller. */
typedef struct UsbControllerInfo {
    int32_t Kind;                     /* 0: UsbNodeController */
    int32_t Reserved;
    const UsbWChar *pDeviceDesc;      /* 8: the controller's name */
    const UsbWChar *pDevicePath;      /* 16: where the platform found it */
    const UsbWChar *pDriverKey;       /* 24: driver key (Windows: class GUID\instance;
                                         Linux: the PCI address) */
    uint32_t VendorID;                /* 32 */
    uint32_t DeviceID;
    uint32_t SubSysID;
    uint32_t Revision;
    const UsbWChar *pDriverName;      /* 48: the bound driver (Linux "xhci_hcd",
                                         Windows the service "USBXHCI"); null: none */
    const UsbWChar *pPciAddress;      /* 56: "0000:00:14.0"; null: not a PCI device or unknown */
} UsbControllerInfo;

/* Kind 1 (root hub) and kind 2 (external hub). The last three fields are
 * null for a root hub. A null pointer means the facts were unavailable. */
typedef struct UsbHubNodeInfo {
    int32_t Kind;                               /* 1 or 2 */
    uint32_t uHubFieldsKnown;                   /* UsbHubField bits */
    UsbHubInformationBlock *pHubInfo;           /* 8 */
    const UsbWChar *pHubName;                   /* 16 */
    UsbHubCapabilitiesEx *pHubCapsEx;           /* 24 */
    UsbHubCapabilities *pHubCaps;               /* 32 */
    UsbPortConnectionInfo *pConnectionInfo;     /* 40 */
    UsbDescriptorRequest *pConfigDesc;          /* 48 */
    UsbStringDescriptorNode *pStringDescs;      /* 56 */
    UsbPortLinkInfo *pLinkInfo;                 /* 64: port path and link speed */
} UsbHubNodeInfo;

/* Kind 3: a device, or an empty port (ConnectionStatus 0). */
typedef struct UsbDeviceNodeInfo {
    int32_t Kind;                               /* 3 */
    int32_t Reserved;
    UsbPortConnectionInfo *pConnectionInfo;     /* 8 */
    UsbDescriptorRequest *pConfigDesc;          /* 16 */
    UsbStringDescriptorNode *pStringDescs;      /* 24 */
    UsbPortLinkInfo *pLinkInfo;                 /* 32: port path and link speed; null for an empty port */
} UsbDeviceNodeInfo;

/* Mode for GenneraUSBControllerInfo: 1 = controllers, hubs and devices. */
#define PROBEKIT_MODE_FULL 1

/* Creates an empty root; null when out of memory. */
PROBEKIT_API UsbRootItem *CreateRootItem(void);
/* Fills the tree under the root (mode 1). A null root or an unknown mode does
 * nothing. Calling it again on a filled root rebuilds the tree. Missing or
 * odd platform facts leave nodes or fields out; it never fails otherwise. */
PROBEKIT_API void GenneraUSBControllerInfo(UsbRootItem *pRoot, int nMode);
/* Frees the root and everything below it; null is fine. */
PROBEKIT_API void DestroyRootItem(UsbRootItem *pRoot);

typedef UsbRootItem *(*PFN_CreateRootItem)(void);
typedef void (*PFN_GenneraUSBControllerInfo)(UsbRootItem *, int);
typedef void (*PFN_DestroyRootItem)(UsbRootItem *);

#ifdef __cplusplus
} /* extern "C" */

static_assert(offsetof(UsbRootItem, pChildren) == 24, "root children at 24");
static_assert(offsetof(UsbListNode, pItem) == 0 && offsetof(UsbListNode, pNext) == 8,
              "list node: item at 0, next at 8");
static_assert(offsetof(UsbTreeItem, pInfo) == 16 && offsetof(UsbTreeItem, pChildren) == 24,
              "item: information at 16, children at 24");
static_assert(offsetof(UsbControllerInfo, Kind) == 0 && offsetof(UsbControllerInfo, pDriverKey) == 24,
              "controller: kind at 0, driver key at 24");
static_assert(sizeof(UsbDeviceDescriptor) == 18, "device descriptor is 18 bytes");
static_assert(sizeof(UsbPipeInfo) == 11, "pipe info is packed");
static_assert(offsetof(UsbPortConnectionInfo, CurrentConfigurationValue) == 22, "packed layout");
static_assert(offsetof(UsbPortConnectionInfo, DeviceAddress) == 25, "packed layout");
static_assert(offsetof(UsbPortConnectionInfo, NumberOfOpenPipes) == 27, "packed layout");
static_assert(offsetof(UsbPortConnectionInfo, ConnectionStatus) == 31, "connection status at 31");
static_assert(offsetof(UsbPortConnectionInfo, PipeList) == 35, "pipes at 35");
static_assert(sizeof(UsbHubDescriptor) == 71, "hub descriptor is 71 bytes");
static_assert(sizeof(UsbHubInformationBlock) == 76, "hub information block is 76 bytes");
static_assert(offsetof(UsbDescriptorRequest, Data) == 12, "request header is 12 bytes");
static_assert(offsetof(UsbHubNodeInfo, pConnectionInfo) == 40, "hub node layout");
static_assert(offsetof(UsbDeviceNodeInfo, pConnectionInfo) == 8, "device node layout");
static_assert(offsetof(UsbControllerInfo, pDriverName) == 48 && offsetof(UsbControllerInfo, pPciAddress) == 56,
              "controller: fields added at the end");
static_assert(offsetof(UsbHubNodeInfo, pLinkInfo) == 64, "hub node: link facts added at the end");
static_assert(offsetof(UsbDeviceNodeInfo, pLinkInfo) == 32, "device node: link facts added at the end");
static_assert(offsetof(UsbPortLinkInfo, SpeedKbps) == 8 && offsetof(UsbPortLinkInfo, FlagsKnown) == 20,
              "link facts layout");
#endif

#endif /* PROBEKIT_H */
