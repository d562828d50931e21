-- One partition, and nothing in it.
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (1, 'Lonely', '/', NULL)
