# Tests of documents, data access, waiting and dialogs.
