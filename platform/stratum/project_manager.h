// The engine's owner of one project's tree, known to its users by pointer only.
#ifndef STRATUM_PROJECT_MANAGER_H
#define STRATUM_PROJECT_MANAGER_H

// Owns every engine object of a project, removed ones that can still come back by undo included, until the last shared
// pointer to it is gone. Whoever holds one may use the project's engine objects from any thread.
class STRM_ProjectManager;

#endif
