-- A file of queues as the first version made it, with a waiting and a parked message.
CREATE TABLE messages (id INTEGER PRIMARY KEY AUTOINCREMENT, queue TEXT NOT NULL, message TEXT NOT NULL, tag TEXT NOT NULL, queuedAt INTEGER NOT NULL, tries INTEGER NOT NULL DEFAULT 0, lastError TEXT NOT NULL DEFAULT '', parked INTEGER NOT NULL DEFAULT 0);
CREATE INDEX messagesInOrder ON messages (queue, parked, id);
INSERT INTO messages (queue, message, tag, queuedAt, tries, lastError, parked) VALUES
    ('lmmindbox', '{"method":"create","payload":{"order":{"ids":{"externalOrderIdLm":"001-1"}}}}', '', 1795590000000, 3, 'no answer', 0),
    ('lmmindbox', '{"method":"change","payload":{}}', '', 1795590000001, 1, 'refused', 1);
PRAGMA user_version = 1;
PRAGMA application_id = 1416195153;
PRAGMA journal_mode = WAL;
