// Names that no statement may hold on a PostgreSQL server.
// Used by its sessions, which tell them to the dialect. Constants, any thread.
#pragma once

#include <array>
#include <string_view>

namespace orvane::provider::engines {

/// What does something that no transaction takes back, or that a reading one does not keep from
/// happening: functions that reach the server's files, its log, its other sessions, its
/// settings, replication and backups, that hold locks beyond the statement or tell other
/// sessions something, that tend indexes, and those that run a text as a statement. What moves
/// sequences on is not among them: rows are numbered by it, and the server refuses it to whoever
/// only reads.
constexpr std::array<std::string_view, 48> kPostgresRefusedNames = {"BINARY_UPGRADE_*",
                                                                    "BRIN_DESUMMARIZE_*",
                                                                    "BRIN_SUMMARIZE_*",
                                                                    "CURSOR_TO_XML*",
                                                                    "DATABASE_TO_XML*",
                                                                    "DBLINK*",
                                                                    "GIN_CLEAN_PENDING_LIST",
                                                                    "LOREAD",
                                                                    "LOWRITE",
                                                                    "LO_*",
                                                                    "PG_ADVISORY_*",
                                                                    "PG_BACKUP_*",
                                                                    "PG_CANCEL_*",
                                                                    "PG_CONTROL_*",
                                                                    "PG_COPY_*",
                                                                    "PG_CREATE_*",
                                                                    "PG_CURRENT_LOGFILE",
                                                                    "PG_DROP_*",
                                                                    "PG_EXPORT_SNAPSHOT",
                                                                    "PG_EXTENSION_CONFIG_DUMP",
                                                                    "PG_FILE_*",
                                                                    "PG_HBA_*",
                                                                    "PG_IDENT_*",
                                                                    "PG_IMPORT_*",
                                                                    "PG_LOG*",
                                                                    "PG_LS_*",
                                                                    "PG_NEXTOID",
                                                                    "PG_NOTIFY",
                                                                    "PG_PROMOTE",
                                                                    "PG_READ_*",
                                                                    "PG_RELOAD_CONF",
                                                                    "PG_REPLICATION_*",
                                                                    "PG_ROTATE_LOGFILE*",
                                                                    "PG_SHOW_ALL_FILE_SETTINGS",
                                                                    "PG_START_BACKUP",
                                                                    "PG_STAT_FILE",
                                                                    "PG_STAT_RESET*",
                                                                    "PG_STOP_*",
                                                                    "PG_SWITCH_WAL",
                                                                    "PG_TERMINATE_*",
                                                                    "PG_TRY_ADVISORY_*",
                                                                    "PG_WAL_REPLAY_*",
                                                                    "QUERY_TO_XML*",
                                                                    "SCHEMA_TO_XML*",
                                                                    "SET_CONFIG",
                                                                    "TABLE_TO_XML*",
                                                                    "TS_REWRITE",
                                                                    "TS_STAT"};

}  // namespace orvane::provider::engines
