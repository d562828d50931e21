// The numbers of the window's resources; read by the resource compiler too.
#pragma once

#define KV_ICON_COMPONENT 100
#define KV_ICON_PRINT 101
#define KV_ICON_SAVE 102
#define KV_ICON_CANCEL 103
#define KV_ICON_ADD 104
#define KV_ICON_DELETE 105
