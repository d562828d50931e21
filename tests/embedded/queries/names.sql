-- Names: any case, brackets, double quotes, owners; keywords as names only in brackets.
CREATE TABLE Orders (OrderId int NOT NULL, [Order] varchar(10) NULL, "Group" int NULL, [a b] int NULL, [x]]y] int NULL)
ok
INSERT INTO orders (orderid, [ORDER], [group], [A B], [X]]Y]) VALUES (1, 'first', 2, 3, 4)
~ 1
SELECT ORDERID, [order], "group", [a b], [x]]y] FROM ORDERS
= 1 | first | 2 | 3 | 4
SELECT o.[Order] FROM dbo.Orders o WHERE O.OrderId = 1
= first
CREATE TABLE orders (a int)
! 42S01 2714
SELECT type, severity, number1 FROM (SELECT 1 AS type, 2 AS severity, 3 AS number1) AS log
= 1 | 2 | 3
SELECT Orders.missing FROM Orders
! 42S22 207
SELECT a.OrderId FROM Orders a, Orders b
SELECT\tOrderId\r\nFROM\r\n\tOrders
select orderid from orders
= 1
CREATE TABLE [select] ([from] int NULL)
ok
INSERT INTO [select] ([from]) VALUES (7)
~ 1
SELECT [from] FROM [select]
= 7
DROP TABLE [select]
DROP TABLE Orders
ok
SELECT 1 FROM Orders
! 42S02 208
